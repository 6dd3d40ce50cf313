#include "host/TextFile.hpp"

#include "File.hpp"
#include "FileSystem.hpp"

#include <string>

std::optional<GS::UniString> ReadTextFile(const IO::Location& location) {
    bool exists = false;
    if (IO::fileSystem.Contains(location, &exists) != NoError || !exists) return std::nullopt;
    IO::File file(location);
    if (file.Open(IO::File::ReadMode) != NoError) return std::nullopt;

    UInt64 length = 0;
    if (file.GetDataLength(&length) != NoError || length >= MaxUSize) return std::nullopt;
    std::string content(length, '\0');
    const auto size = static_cast<USize>(length);
    if (file.ReadBin(content.data(), size) != NoError) return std::nullopt;
    file.Close();
    return GS::UniString(content.data(), size, CC_Default);
}

void WriteTextFile(const IO::Location& location, const GS::UniString& text) {
    IO::File file(location, IO::File::Create);
    if (file.Open(IO::File::WriteEmptyMode) != NoError) return;
    const auto bytes = text.ToCStr();  // never fewer of them than characters
    file.WriteBin(bytes.Get(), text.GetLength());
    file.Close();
}
