#include "DOMReader.hpp"

#include <fstream>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/sax/ErrorHandler.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PanicHandler.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/XMLEntityResolver.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>
#include <xercesc/validators/DTD/DTDAttDef.hpp>
#include <xercesc/validators/DTD/DTDEntityDecl.hpp>

#include "HostKit/GSRoot/Text.hpp"

namespace GSXML {

namespace {

constexpr std::uintmax_t maxBytes = 64 << 20;
constexpr XMLSize_t maxEntityLength = 65536;
constexpr XMLSize_t maxDefaultLength = 100;  // of an attribute, which each element then has
constexpr XMLSize_t maxExpansions = 100;
constexpr int maxDepth = 200;
constexpr XMLSize_t maxNodes = 2'000'000;
constexpr XMLSize_t maxAttributes = 1000;  // of an element: the library takes their square in time

static_assert(std::is_same_v<XMLCh, GS::uchar_t>, "both are UTF-16 units");

std::string TextOf(const XMLCh* text) {
    return text == nullptr ? std::string() : hostkit::Utf8(text);
}

// The library's own ends the process.
class ThrowingPanic : public xercesc::PanicHandler {
  public:
    void panic(const PanicReasons reason) override { throw Exception(getPanicReasonString(reason)); }
};

// It has one try only, even when that fails. It stays initialised: documents of other readers may still live.
bool InitializeLibrary() {
    static ThrowingPanic panic;
    try {
        xercesc::XMLPlatformUtils::Initialize(xercesc::XMLUni::fgXercescDefaultLocale, nullptr, &panic);
        return true;
    } catch (...) {
        return false;
    }
}

std::string ReadFile(const IO::Location& location) {
    const std::filesystem::path file = hostkit::ToPath(location);
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error))
        throw Exception("There is no file " + file.string() + ".");
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    if (error) throw Exception(file.string() + " cannot be read: " + error.message() + ".");
    if (size > maxBytes)
        throw Exception(file.string() + " has " + std::to_string(size >> 20) + " MB; XML files may have " +
                        std::to_string(maxBytes >> 20) + " MB.");
    std::string content(size, '\0');
    std::ifstream stream(file, std::ios::binary);
    if (!stream.read(content.data(), static_cast<std::streamsize>(size)))
        throw Exception(file.string() + " cannot be read.");
    return content;
}

class ThrowingHandler : public xercesc::ErrorHandler {
  public:
    void warning(const xercesc::SAXParseException&) override {}
    void error(const xercesc::SAXParseException& exception) override { Throw(exception); }
    void fatalError(const xercesc::SAXParseException& exception) override { Throw(exception); }
    void resetErrors() override {}

  private:
    [[noreturn]] static void Throw(const xercesc::SAXParseException& exception) {
        throw Exception("Line " + std::to_string(exception.getLineNumber()) + ", column " +
                        std::to_string(exception.getColumnNumber()) + ": " + TextOf(exception.getMessage()));
    }
};

class RefusingResolver : public xercesc::XMLEntityResolver {
  public:
    xercesc::InputSource* resolveEntity(xercesc::XMLResourceIdentifier* entity) override {
        throw Exception("The file refers to another one: " + TextOf(entity->getSystemId()));
    }
};

}  // namespace

// Keeps the limits that the library itself does not know.
class DOMReader::Parser : public xercesc::XercesDOMParser {
  public:
    Parser() {
        security.setEntityExpansionLimit(maxExpansions);
        setSecurityManager(&security);
        setErrorHandler(&handler);
        setXMLEntityResolver(&resolver);
        setValidationScheme(Val_Never);
        setLoadExternalDTD(false);
        setDisableDefaultEntityResolution(true);
        setCreateEntityReferenceNodes(false);
    }

    void startElement(const xercesc::XMLElementDecl& declaration, const unsigned int uri, const XMLCh* prefix,
                      const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes, const XMLSize_t count,
                      const bool isEmpty, const bool isRoot) override {
        if (++depth > maxDepth) throw Exception("The elements nest too deep.");
        if (count > maxAttributes) throw Exception("An element has too many attributes.");
        Count(1 + count);
        XercesDOMParser::startElement(declaration, uri, prefix, attributes, count, isEmpty, isRoot);
    }

    void endElement(const xercesc::XMLElementDecl& declaration, const unsigned int uri, const bool isRoot,
                    const XMLCh* prefix) override {
        --depth;
        XercesDOMParser::endElement(declaration, uri, isRoot, prefix);
    }

    void docComment(const XMLCh* const comment) override {
        Count(1);
        XercesDOMParser::docComment(comment);
    }

    void docPI(const XMLCh* const target, const XMLCh* const data) override {
        Count(1);
        XercesDOMParser::docPI(target, data);
    }

    void docCharacters(const XMLCh* const text, const XMLSize_t length, const bool isSection) override {
        if (isSection) Count(1);
        XercesDOMParser::docCharacters(text, length, isSection);
    }

    void entityDecl(const xercesc::DTDEntityDecl& entity, const bool isParameter,
                    const bool isIgnored) override {
        if (entity.getValueLen() > maxEntityLength)
            throw Exception("The entity " + TextOf(entity.getName()) + " is too long.");
        XercesDOMParser::entityDecl(entity, isParameter, isIgnored);
    }

    void attDef(const xercesc::DTDElementDecl& element, const xercesc::DTDAttDef& attribute,
                const bool isIgnored) override {
        if (xercesc::XMLString::stringLen(attribute.getValue()) > maxDefaultLength)
            throw Exception("The default of the attribute " + TextOf(attribute.getFullName()) +
                            " is too long.");
        XercesDOMParser::attDef(element, attribute, isIgnored);
    }

  private:
    void Count(XMLSize_t added) {
        nodes += added;
        if (nodes > maxNodes) throw Exception("The file has too many elements and attributes.");
    }

    xercesc::SecurityManager security;
    ThrowingHandler handler;
    RefusingResolver resolver;
    int depth = 0;
    XMLSize_t nodes = 0;
};

DOMReader::DOMReader(const IO::Location& file, const GS::UniString& rootName) {
    static const bool isUsable = InitializeLibrary();
    if (!isUsable) throw Exception("XML files cannot be read: the library for them does not start.");
    const std::string content = ReadFile(file);
    try {
        const xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(content.data()),
                                                content.size(), u"file");
        parser = std::make_unique<Parser>();
        parser->parse(source);
    } catch (const xercesc::XMLException& exception) {
        throw Exception("Line " + std::to_string(exception.getSrcLine()) + ": " +
                        TextOf(exception.getMessage()));
    } catch (const xercesc::DOMException& exception) {
        throw Exception(TextOf(exception.getMessage()));
    } catch (const xercesc::OutOfMemoryException&) {
        throw Exception("There is not enough memory for the file.");
    }
    xercesc::DOMElement* element = parser->getDocument()->getDocumentElement();
    if (element != nullptr && rootName == GS::UniString(element->getTagName())) root = element;
}

DOMReader::~DOMReader() = default;

}  // namespace GSXML
