#include "FileTypeManager.hpp"

#include <map>

namespace FTM {

namespace {

using Types = std::map<TypeID, FileType>;

// Never destroyed: an add-on's manager may go while the process ends.
Types& KnownTypes() {
    static auto& types = *new Types;
    return types;
}

std::string Folded(const GS::UniString& extension) {
    std::string text = extension.ToCStr().Get();
    for (char& letter : text) {
        if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
    }
    return text;
}

}  // namespace

FileType::FileType(const char* description, const char* extension, GSType, GSType, Int32)
    : description(description == nullptr ? "" : description), extension(extension) {}

FileTypeManager::FileTypeManager(const char*) {}

FileTypeManager::~FileTypeManager() {
    for (const TypeID type : types)
        KnownTypes().erase(type);
}

TypeID FileTypeManager::AddType(const FileType& type, GroupID) {
    static UInt32 last = 0;
    types.push_back(TypeID{++last});
    KnownTypes().emplace(types.back(), type);
    return types.back();
}

TypeID FileTypeManager::SearchForType(const FileType& type) {
    for (const auto& [id, known] : KnownTypes()) {
        if (Folded(known.GetExtension()) == Folded(type.GetExtension())) return id;
    }
    return UnknownType;
}

}  // namespace FTM

const FTM::FileType* hostkit::FindFileType(FTM::TypeID type) {
    const auto found = FTM::KnownTypes().find(type);
    return found == FTM::KnownTypes().end() ? nullptr : &found->second;
}
