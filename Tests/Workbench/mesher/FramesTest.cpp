#include "Workbench/mesher/Frames.hpp"

#include <gmock/gmock.h>

#include <cmath>

namespace workbench {
namespace {

class Bytes {
  public:
    template <class Value>
    Bytes& operator<<(Value value) {
        text.append(reinterpret_cast<const char*>(&value), sizeof value);
        return *this;
    }
    std::string text;
};

std::string Frame(std::uint32_t kind, const std::string& payload) {
    Bytes head;
    head.text = "MSH1";
    head << kind << static_cast<std::uint32_t>(payload.size());
    return head.text + payload;
}

// One triangle with corners (0,0,0), (x,0,0), (0,2,0), and its last index.
std::string Element(std::uint64_t record, float x, std::uint32_t lastIndex) {
    Bytes bytes;
    bytes << record << 1000.0 << 2000.0 << 3.0 << 1u;
    bytes << 0.1F << 0.2F << 0.3F << 1.0F << 3u << 3u;
    bytes << 0.0F << 0.0F << 0.0F << x << 0.0F << 0.0F << 0.0F << 2.0F << 0.0F << 0u << 1u << lastIndex;
    return Frame(1, bytes.text);
}

TEST(FramesTest, ReadsTheSameMessagesHoweverTheBytesAreCut) {
    const std::string bytes = Element(92147483647, 1, 2) +
                              Frame(2, Bytes().operator<<(std::uint64_t{7}).text + "why") + Element(8, 1, 3) +
                              Element(9, NAN, 2) + Frame(4, "no") + Frame(5, "");
    for (std::size_t piece = 1; piece <= bytes.size(); ++piece) {
        FrameReader reader;
        std::vector<MeshMessage> messages;
        for (std::size_t at = 0; at < bytes.size(); at += piece) {
            reader.Add(bytes.data() + at, std::min(piece, bytes.size() - at));
            ASSERT_TRUE(reader.Read([&](MeshMessage message) { messages.push_back(std::move(message)); }));
        }
        ASSERT_EQ(messages.size(), 6u);
        const ElementMesh& mesh = *std::get<ElementMeshPtr>(messages[0]);
        EXPECT_EQ(mesh.record, 92147483647u);
        EXPECT_EQ(mesh.bounds.min, (Vec3{1000, 2000, 3}));
        EXPECT_EQ(mesh.bounds.max, (Vec3{1001, 2002, 3}));
        EXPECT_EQ(std::get<MeshFailed>(messages[1]).reason, "why");
        EXPECT_EQ(std::get<MeshFailed>(messages[2]).record, 8u);  // an index beyond the vertices
        EXPECT_EQ(std::get<MeshFailed>(messages[3]).record, 9u);  // a coordinate that is no number
        EXPECT_EQ(std::get<MeshRefused>(messages[4]).reason, "no");
        EXPECT_TRUE(std::holds_alternative<MeshDone>(messages[5]));
    }
}

TEST(FramesTest, AnElementWithWrongCountsIsNonsense) {
    const std::string good = Element(1, 1, 2);
    for (std::size_t at = 44; at < 48; ++at) {  // the number of parts
        std::string bytes = good;
        bytes[at] = '\x7f';
        FrameReader reader;
        reader.Add(bytes.data(), bytes.size());
        EXPECT_FALSE(reader.Read([](const MeshMessage&) { FAIL(); })) << at;
    }
}

}  // namespace
}  // namespace workbench
