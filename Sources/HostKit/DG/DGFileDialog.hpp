#pragma once

#include <vector>

#include "FileTypeManager.hpp"
#include "Location.hpp"

namespace DG {

// A dialog of the system's own.
class SystemDialog {
  public:
    virtual ~SystemDialog() = default;

    void SetTitle(const GS::UniString& text) { title = text; }

    // Shows the dialog and waits: true when the person confirmed. False at once when nobody can see it.
    virtual bool Invoke() = 0;

  protected:
    GS::UniString title;
};

// Asks for a file that exists.
class FileDialog : public SystemDialog {
  public:
    enum Type { OpenFile };

    explicit FileDialog(Type) {}

    // Shows files of this type only; the first filter counts at the beginning. The filter's index, from 0.
    UIndex AddFilter(FTM::TypeID type);
    // In place of the type's own description; an unknown index is passed over.
    void SetFilterText(UIndex filter, const GS::UniString& text);

    bool Invoke() override;

    // What was chosen, or an empty location.
    const IO::Location& GetSelectedFile() const { return selected; }

  private:
    struct Filter {
        GS::UniString text;
        GS::UniString extension;
    };

    std::vector<Filter> filters;
    IO::Location selected;
};

}  // namespace DG
