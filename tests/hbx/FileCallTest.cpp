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

TEST_F(ProgramTest, AnUploadedFileDownloadsAsItWas) {
    const std::string bytes = pattern(1200000);
    write("home/source.bin", bytes);
    const std::string reply = out({"call", write("request", uploadRequest("<path>source.bin</path>"))});
    const std::size_t first = reply.find("<chunks>");
    const std::string chunks = reply.substr(first, reply.find("</chunks>") + 9 - first);
    EXPECT_EQ(linesOf(chunks), 1 + 3 * 6U) << "three pieces";

    const std::string download =
        "<data><file><download><path>target.bin</path>" + chunks + "</download></file></data>";
    (void)out({"call", write("request", messageText(download))}); // no progress where nobody watches
    EXPECT_TRUE(contentOf(path("home/target.bin")) == bytes);

    const Ended again = run({"call", path("request")});
    EXPECT_EQ(again.code, 3);
    EXPECT_EQ(again.err, "hbx: " + path("request") + ": /data/file/download: Cannot open dst file \"" +
                             path("home/target.bin") + "\": File exists [17]\n");
}

TEST_F(ProgramTest, UploadsPartsAndSaysWhatIsWrong) {
    write("home/source", "0123456789");
    std::filesystem::resize_file(write("home/large", ""), (std::uintmax_t{64} << 20) + 1);
    const std::pair<std::string, std::string> rows[] = {
        {"<path>source</path><file_offset>3</file_offset><size>4</size>", ""},
        {"<path>" + path("home/source") + "</path>", ""},
        {"<path>source</path><size>9223372036854775807</size>", "Src file size was changed "},
        {"<path>none</path>", "Cannot open src file \"" + path("home/none") + "\": No such file or dir"},
        {"<path>source</path><file_offset>x</file_offset>", "file_offset cannot be read\n"},
        {"", "path is missing\n"},
        {"<path>large</path>", "more than 67108864 bytes: "},
    };
    for (const auto& [arguments, error] : rows) {
        const Ended ended = run({"call", write("request", uploadRequest(arguments))});
        EXPECT_EQ(ended.code, error.empty() ? 0 : 3) << arguments;
        const std::string complaint = "hbx: " + path("request") + ": /data/file/upload: " + error;
        EXPECT_EQ(ended.err.rfind(error.empty() ? "" : complaint, 0), 0U) << ended.err;
        EXPECT_EQ(linesOf(ended.err), error.empty() ? 0U : 1U);
    }
}

TEST_F(ProgramTest, ATransferShowsItsProgressOnATerminal) {
    write("home/so\x7Furce", pattern(1100000));
    const std::string request = write("request", uploadRequest("<path>so\x7Furce</path>"));
    const Terminal terminal;
    EXPECT_EQ(run({"call", request}, {.err = terminal.name()}).code, 0);
    const std::string shown = terminal.shown();
    EXPECT_EQ(shown.rfind("\rso?urce [" + std::string(40, ' ') + "] 0%\r", 0), 0U) << shown;
    EXPECT_NE(shown.find("] 47%\r"), std::string::npos) << shown;
    EXPECT_NE(shown.find("\rso?urce [" + std::string(40, '=') + "] 100%\r\n"), std::string::npos) << shown;
}

} // namespace
} // namespace HBX
