#include "ProgramTest.h"
#include "Terminal.h"

namespace HBX {
namespace {

std::string pattern(std::size_t size) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<char>(i * 7 + i / 251);
    }
    return bytes;
}

std::string uploadRequest(const std::string& arguments) {
    return messageText("<data><file><upload>" + arguments + "</upload></file></data>");
}

/// The part between two marks, from the first on.
std::string between(const std::string& text, const std::string& begin, const std::string& end) {
    const std::size_t first = text.find(begin);
    const std::size_t last = text.rfind(end);
    return first == std::string::npos || last == std::string::npos
               ? ""
               : text.substr(first, last + end.size() - first);
}

TEST_F(ProgramTest, AnUploadedFileDownloadsAsItWas) {
    const std::string bytes = pattern(1200000);
    write("home/source.bin", bytes);
    const std::string out = path("reply");
    ASSERT_EQ(run({"call", write("request", uploadRequest("<path>source.bin</path>"))}, {.out = out}).code,
              0);
    const std::string chunks = between(contentOf(out), "<chunks>", "</chunks>");
    EXPECT_EQ(linesOf(chunks), 1 + 3 * 6U) << "three pieces";

    const std::string download =
        "<data><file><download><path>target.bin</path>" + chunks + "</download></file></data>";
    const Ended ended = run({"call", write("request", messageText(download))});
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_EQ(ended.err, "") << "no progress where nobody watches";
    EXPECT_TRUE(contentOf(path("home/target.bin")) == bytes);

    const Ended again = run({"call", path("request")});
    EXPECT_EQ(again.code, 3);
    EXPECT_EQ(again.err, "hbx: " + path("request") + ": /data/file/download: Cannot open dst file \"" +
                             path("home/target.bin") + "\": File exists [17]\n");
}

TEST_F(ProgramTest, UploadsPartsAndSaysWhatIsWrong) {
    write("home/source", "0123456789");
    std::filesystem::create_directory(path("home/folder"));
    const struct {
        std::string arguments;
        std::string error; ///< "": it works
    } rows[] = {
        {"<path>source</path><file_offset>3</file_offset><size>4</size>", ""},
        {"<path>source</path><file_offset>10</file_offset>", ""},
        {"<path>" + path("home/source") + "</path>", ""},
        {"<path>source</path><size>11</size>", "Src file size was changed \"" + path("home/source") + '"'},
        {"<path>source</path><size>9223372036854775807</size>",
         "Src file size was changed \"" + path("home/source") + '"'},
        {"<path>none</path>",
         "Cannot open src file \"" + path("home/none") + "\": No such file or directory [2]"},
        {"<path>folder</path><size>1</size>",
         "Cannot read from file \"" + path("home/folder") + "\": Is a directory [21]"},
        {"<path>source</path><file_offset>x</file_offset>", "file_offset cannot be read"},
        {"", "path is missing"},
    };
    for (const auto& row : rows) {
        const Ended ended = run({"call", write("request", uploadRequest(row.arguments))});
        EXPECT_EQ(ended.code, row.error.empty() ? 0 : 3) << row.arguments;
        EXPECT_EQ(ended.err, row.error.empty()
                                 ? ""
                                 : "hbx: " + path("request") + ": /data/file/upload: " + row.error + '\n');
    }
    std::filesystem::resize_file(write("home/large", ""), (std::uintmax_t{64} << 20) + 1);
    const Ended large = run({"call", write("request", uploadRequest("<path>large</path>"))});
    EXPECT_NE(large.out.find("more than 67108864 bytes"), std::string::npos) << large.out;
}

TEST_F(ProgramTest, ATransferShowsItsProgressOnATerminal) {
    write("home/so\x7Furce", pattern(1100000));
    const std::string request = write("request", uploadRequest("<path>so\x7Furce</path>"));
    const Terminal terminal;
    const Ended ended = run({"call", request}, {.err = terminal.name()});
    EXPECT_EQ(ended.code, 0);
    const std::string shown = terminal.shown();
    EXPECT_EQ(shown.rfind("\rso?urce [" + std::string(40, ' ') + "] 0%\r", 0), 0U) << shown;
    EXPECT_NE(shown.find("] 47%\r"), std::string::npos) << shown;
    EXPECT_NE(shown.find("\rso?urce [" + std::string(40, '=') + "] 100%\r\n"), std::string::npos) << shown;
}

} // namespace
} // namespace HBX
