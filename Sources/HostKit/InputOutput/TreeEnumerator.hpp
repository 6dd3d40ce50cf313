#pragma once

#include "Folder.hpp"

namespace IO {

// Walks a folder and all folders below it, each in the order of names: its files first. Links to folders are
// not entered, so the walk always ends.
class TreeEnumerator {
  public:
    explicit TreeEnumerator(const Folder& folder) : parent(folder) {}
    virtual ~TreeEnumerator() = default;

    // NoError, or the error of the first folder that could not be read.
    GSErrCode Do();

  protected:
    // Folder of what is being reported.
    const Folder& GetParent() const { return parent; }

    // The answer says whether the file was taken; the walk goes on either way.
    virtual bool FileFound(const Name& name);

    // Answering false passes the folder by.
    virtual bool FolderEntered(const Name& name, const Folder& folder);
    virtual void FolderLeft(const Name& name, const Folder& folder);

  private:
    GSErrCode Walk(const Folder& folder);

    Folder parent;
};

}  // namespace IO
