#include "Service/http/Form.hpp"

#include <gmock/gmock.h>

#include "Service/Errors.hpp"

namespace service {
namespace {

TEST(FormTest, ReadsNamesAsClientsWriteThem) {
    struct Case {
        const char* disposition;
        const char* name;
        const char* fileName;
    };
    const Case cases[] = {
        {R"(form-data; name="file"; filename="a.ifc")", "file", "a.ifc"},
        {R"( form-data;name=file;filename=a.ifc)", "file", "a.ifc"},
        {R"(form-data; NAME="file"; FileName="a;b=c.ifc")", "file", "a;b=c.ifc"},
        {R"(form-data; name="file"; filename="a%22b%22.ifc")", "file", "a\"b\".ifc"},
        {R"(form-data; name="file"; filename="100%25 %C3.ifc")", "file", "100%25 %C3.ifc"},
        {R"(form-data; name="file"; filename="a\"b.ifc")", "file", "a\"b.ifc"},
        {R"(form-data; name="file"; filename="C:\dir\")", "file", "C:\\dir\\"},
        {R"(form-data; filename="x"; filename*=UTF-8''%E2%82%AC%20a.ifc; name="file")", "file", "€ a.ifc"},
        {R"(form-data; name="file"; filename*=iso-8859-1'de'Gr%FC%DFe)", "file", "Grüße"},
        {R"(form-data; name="file"; filename="")", "file", ""},
    };
    for (const Case& c : cases) {
        const FormPart part = ParseDisposition(c.disposition);
        EXPECT_EQ(part.name, c.name) << c.disposition;
        EXPECT_EQ(part.fileName, c.fileName) << c.disposition;
    }
    EXPECT_EQ(ParseDisposition(R"(form-data; name="file")").fileName, std::nullopt);
    EXPECT_THROW(ParseDisposition(R"(form-data; name="file; filename=x)"), HttpError);
    EXPECT_THROW(ParseDisposition(R"(form-data; filename*=KOI8-R''x)"), HttpError);
}

TEST(FormTest, FindsTheBoundary) {
    EXPECT_EQ(FormBoundary("multipart/form-data; boundary=abc"), "abc");
    EXPECT_EQ(FormBoundary("Multipart/Form-Data; charset=utf-8; Boundary=\"a b;c\""), "a b;c");
    EXPECT_EQ(FormBoundary("multipart/form-data"), std::nullopt);
    EXPECT_EQ(FormBoundary("multipart/form-data; boundary="), std::nullopt);
    EXPECT_EQ(FormBoundary("application/json; boundary=abc"), std::nullopt);
}

// Every way to cut a form into equal pieces gives the same parts: nothing depends on where a read ended.
TEST(FormTest, ReadsTheSameHoweverItArrives) {
    const std::string tricky =
        "\r\n--b\r\n--bound\r\r\n-\n--boundar_y\r\n"
        "--";
    const std::string form =
        "preamble\r\n--boundary  \r\nX-Other: 1\r\ncontent-disposition: form-data; name=a\r\n\r\n" + tricky +
        "\r\n--boundary\r\n\r\nno head\r\n--boundary\r\n" +
        "Content-Disposition: form-data; name=c\r\n\r\n\r\n--boundary--\r\nepilogue";
    for (size_t size = 1; size <= form.size(); ++size) {
        std::vector<std::string> names;
        std::vector<std::string> contents;
        FormReader reader(
            "boundary",
            [&](const FormPart& part) {
                names.push_back(part.name);
                contents.emplace_back();
            },
            [&](std::string_view content) { contents.back() += content; });
        for (size_t at = 0; at < form.size(); at += size) {
            EXPECT_EQ(reader.IsComplete(), at >= form.size() - 10) << at;
            reader.Feed(std::string_view(form).substr(at, size));
        }
        EXPECT_TRUE(reader.IsComplete());
        EXPECT_THAT(names, testing::ElementsAre("a", "", "c")) << size;
        EXPECT_THAT(contents, testing::ElementsAre(tricky, "no head", "")) << size;
    }
}

TEST(FormTest, RefusesEndlessHeads) {
    const auto ignore = [](const auto&) {};
    FormReader reader("b", ignore, ignore);
    reader.Feed("--b\r\n");
    EXPECT_THROW(reader.Feed(std::string(20'000, 'x')), HttpError);
    FormReader padded("b", ignore, ignore);
    EXPECT_THROW(padded.Feed("--b" + std::string(20'000, ' ')), HttpError);
}

}  // namespace
}  // namespace service
