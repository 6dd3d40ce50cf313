#include "Workbench/dwg/Object.hpp"

namespace workbench::dwg {
namespace {

constexpr std::size_t mostPageBytes = 2030;

// Groups of 15 bits.
void AppendSize(std::string& bytes, std::size_t size) {
    while (size >= 0x8000) {
        AppendLittle(bytes, static_cast<std::uint16_t>(size | 0x8000));
        size >>= 15;
    }
    AppendLittle(bytes, static_cast<std::uint16_t>(size));
}

void AppendUnsigned(std::string& bytes, std::uint32_t value) {
    for (; value >= 0x80; value >>= 7)
        bytes.push_back(static_cast<char>(value | 0x80));
    bytes.push_back(static_cast<char>(value));
}

// Addresses only grow here, so the sign is never needed; its bit must stay free.
void AppendSigned(std::string& bytes, std::uint32_t value) {
    for (; value >= 0x40; value >>= 7)
        bytes.push_back(static_cast<char>(value | 0x80));
    bytes.push_back(static_cast<char>(value));
}

void AppendBig(std::string& bytes, std::size_t number) {
    bytes.push_back(static_cast<char>(number >> 8));
    bytes.push_back(static_cast<char>(number));
}

std::string PageOf(const std::string& entries) {
    std::string page;
    AppendBig(page, entries.size() + 2);
    page += entries;
    AppendBig(page, Crc(page));
    return page;
}

}  // namespace

Object::Object(int type, std::uint32_t handle) {
    BS(type);
    sizeAt = BitCount();
    RL(0);
    H(Link::self, handle);
    BS(0);  // no extended data
}

void Object::EndData() {
    ReplaceRL(sizeAt, static_cast<std::uint32_t>(BitCount()));
}

std::string Object::Bytes() const {
    const std::string& body = BitStream::Bytes();
    std::string bytes;
    AppendSize(bytes, body.size());
    bytes += body;
    AppendLittle(bytes, Crc(bytes));
    return bytes;
}

void ObjectList::Add(std::uint32_t handle, const Object& object) {
    addresses.emplace_back(handle, static_cast<std::uint32_t>(start + bytes.size()));
    bytes += object.Bytes();
}

std::string ObjectList::Map() const {
    std::string map;
    std::string page;
    std::pair<std::uint32_t, std::uint32_t> last;
    for (const auto& [handle, address] : addresses) {
        std::string entry;
        AppendUnsigned(entry, handle - last.first);
        AppendSigned(entry, address - last.second);
        if (page.size() + entry.size() > mostPageBytes) {
            map += PageOf(page);
            page.clear();
            entry.clear();  // differences begin anew on each page
            AppendUnsigned(entry, handle);
            AppendSigned(entry, address);
        }
        page += entry;
        last = {handle, address};
    }
    return map + PageOf(page) + PageOf({});
}

}  // namespace workbench::dwg
