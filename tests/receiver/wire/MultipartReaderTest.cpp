// Multipart bodies, whole, in pieces, and hostile.
#include "wire/MultipartReader.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace mireth::receiver {
namespace {

struct Collected {
    PartHead head;
    std::string content;
    bool ended = false;
};

class Collector : public PartListener {
  public:
    bool partBegan(const PartHead& head) override {
        parts.push_back({.head = head, .content = {}});
        return head.name != refusedName;
    }
    bool partBytes(std::string_view bytes) override {
        parts.back().content += bytes;
        return true;
    }
    bool partEnded() override {
        parts.back().ended = true;
        return true;
    }

    std::vector<Collected> parts;
    std::string refusedName = "refused";
};

std::string part(const std::string& name, const std::string& content) {
    return "--B\r\nContent-Disposition: form-data; name=\"" + name + "\"\r\n\r\n" + content + "\r\n";
}

// The complaint, "" when the body was complete.
std::string complaintOf(const std::string& body) {
    Collector collector;
    MultipartReader reader("B", collector);
    if (!reader.consume(body)) {
        return reader.complaint();
    }
    return reader.complete() ? "" : "incomplete";
}

TEST(MultipartReader, HandsOutPartsWhateverThePiecesTheyArriveIn) {
    const std::string video = std::string("\r\n--x\r\n-\r\r\n--\0", 15) + "end\r\n";
    const std::string body = part("a", "1") +
                             "--B\r\ncontent-disposition: FORM-DATA; filename=\"f;.mp4\" ; name=b\r\n"
                             "Content-Type: video/mp4\r\nX-Other: 1\r\n\r\n" +
                             video + "\r\n" + part("empty", "") + "--B--\r\n";
    for (std::size_t piece = 1; piece <= body.size(); ++piece) {
        Collector collector;
        MultipartReader reader("B", collector);
        for (std::size_t at = 0; at < body.size(); at += piece) {
            ASSERT_TRUE(reader.consume(std::string_view(body).substr(at, piece))) << reader.complaint();
        }
        EXPECT_TRUE(reader.complete());
        ASSERT_EQ(collector.parts.size(), 3U);
        EXPECT_EQ(collector.parts[0].head.name, "a");
        EXPECT_EQ(collector.parts[0].content, "1");
        EXPECT_EQ(collector.parts[0].head.filename, std::nullopt);
        EXPECT_EQ(collector.parts[1].head.name, "b");
        EXPECT_EQ(collector.parts[1].head.filename, "f;.mp4");
        EXPECT_EQ(collector.parts[1].head.contentType, "video/mp4");
        EXPECT_EQ(collector.parts[1].content, video);
        EXPECT_EQ(collector.parts[2].content, "");
        EXPECT_TRUE(collector.parts[2].ended);
    }
}

TEST(MultipartReader, AFormWithoutPartsIsComplete) {
    EXPECT_EQ(complaintOf("--B--\r\n"), "");
    EXPECT_EQ(complaintOf("--B--"), "");
}

TEST(MultipartReader, RefusesMalformedBodies) {
    EXPECT_EQ(complaintOf("preamble\r\n--B--\r\n"), "the body does not begin with its boundary");
    EXPECT_EQ(complaintOf("\r\n--B--\r\n"), "the body does not begin with its boundary");
    EXPECT_EQ(complaintOf("--C--\r\n"), "the body does not begin with its boundary");
    EXPECT_EQ(complaintOf("--Bx--\r\n"), "a boundary is followed by something else than a line end");
    EXPECT_EQ(complaintOf(part("a", "1") + "--B--\r\nmore"), "something follows the closing boundary");
    EXPECT_EQ(complaintOf("--B--x"), "something follows the closing boundary");
    EXPECT_EQ(complaintOf(part("a", "1")), "incomplete");
    EXPECT_EQ(complaintOf(part("a", "1") + "--B"), "incomplete");
    EXPECT_EQ(complaintOf(""), "incomplete");
    EXPECT_EQ(complaintOf("--B\r\n\r\n\r\nx\r\n--B--"),
              "a part lacks its form-data Content-Disposition line");
    EXPECT_EQ(complaintOf("--B\r\nno colon\r\n\r\nx"), "a part has a malformed header line");
    EXPECT_EQ(complaintOf("--B\r\na: b\nc: d\r\n\r\nx"), "a part has a malformed header line");
    EXPECT_EQ(complaintOf("--B\r\nContent-Disposition: form-data\r\n\r\nx"), "a part lacks its name");
    EXPECT_EQ(complaintOf("--B\r\nContent-Disposition: attachment; name=\"a\"\r\n\r\nx"),
              "a part lacks its form-data Content-Disposition line");
    for (const auto* const parameters :
         {"; name=\"a", "; name", "; name=", "; =a", "; name=\"a\"x", "; name=\"a\"; name=\"b\"", ";"}) {
        EXPECT_EQ(
            complaintOf(std::string("--B\r\nContent-Disposition: form-data") + parameters + "\r\n\r\nx"),
            "a part has a malformed Content-Disposition line")
            << parameters;
    }
    EXPECT_EQ(complaintOf("--B\r\nContent-Disposition: form-data; name=a\r\n"
                          "Content-Disposition: form-data; name=b\r\n\r\nx"),
              "a part has two Content-Disposition lines");
}

TEST(MultipartReader, AnEndlessPartHeaderIsCutOff) {
    EXPECT_EQ(complaintOf("--B\r\nX: " + std::string(1'000'000, 'a')), "the header of a part is too long");
    EXPECT_EQ(complaintOf("--B\r\nX: " + std::string(1'000'000, 'a') + "\r\n\r\n"),
              "the header of a part is too long");
}

TEST(MultipartReader, EndsWhenTheListenerSaysSo) {
    Collector collector;
    MultipartReader reader("B", collector);
    EXPECT_FALSE(reader.consume(part("refused", "1") + part("a", "2")));
    EXPECT_EQ(reader.complaint(), "");
    EXPECT_FALSE(reader.consume("more"));
    EXPECT_EQ(collector.parts.size(), 1U);
}

TEST(MultipartReader, FindsTheBoundary) {
    const auto boundary = [](const char* type) { return MultipartReader::boundaryOf(type); };
    EXPECT_EQ(boundary("multipart/form-data; boundary=AB-12"), "AB-12");
    EXPECT_EQ(boundary("Multipart/Form-Data; charset=x; Boundary=\"a b\""), "a b");
    EXPECT_EQ(boundary("multipart/form-data"), std::nullopt);
    EXPECT_EQ(boundary("multipart/form-data; boundary="), std::nullopt);
    EXPECT_EQ(boundary("multipart/form-data; boundary=\"a "), std::nullopt);
    EXPECT_EQ(boundary("multipart/form-data; boundary=\"a \""), std::nullopt);
    EXPECT_EQ(boundary("multipart/form-data; boundary=a{b"), std::nullopt);
    EXPECT_EQ(boundary("application/json; boundary=a"), std::nullopt);
    EXPECT_EQ(boundary(""), std::nullopt);
    EXPECT_EQ(boundary(("multipart/form-data; boundary=" + std::string(71, 'a')).c_str()), std::nullopt);
}

}  // namespace
}  // namespace mireth::receiver
