#pragma once

#include <memory>
#include <xercesc/dom/DOM.hpp>

#include "GSException.hpp"
#include "Location.hpp"

namespace GSXML {

// A file that cannot be read, is too large, or is no well-formed XML; the message says which, and where.
class Exception : public GS::Exception {
  public:
    using GS::Exception::Exception;
};

// An XML file of 64 MB at most, read as a whole. Nothing besides it is read, neither from disk nor from the
// network: an external DTD is passed over, and an external entity is an error where it is used. Entities may
// have 65,536 characters and be used 100 times, an attribute's default may have 100. Elements may nest 200
// deep and have 1,000 attributes each; all of them, with comments, instructions and sections, may be
// 2,000,000, which takes about 1.2 GB. Throws an Exception. Main thread only.
class DOMReader {
  public:
    DOMReader(const IO::Location& file, const GS::UniString& rootName);
    ~DOMReader();
    DOMReader(const DOMReader&) = delete;
    DOMReader& operator=(const DOMReader&) = delete;

    // The root, which lives as long as the reader; null when it has another name.
    xercesc::DOMElement* GetActualNode() const { return root; }

  private:
    class Parser;

    std::unique_ptr<Parser> parser;
    xercesc::DOMElement* root = nullptr;
};

}  // namespace GSXML
