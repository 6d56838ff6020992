#include "ProgramTest.h"
#include "Terminal.h"

namespace HBX {
namespace {

/// Names and bytes of files, in requests.
std::string request(const std::string& verb, const std::string& arguments) {
    return messageText("<data><file><" + verb + ">" + arguments + "</" + verb + "></file></data>");
}

TEST_F(ProgramTest, AnUploadedFileDownloadsAsItWas) {
    std::string bytes;
    while (bytes.size() < 1200000) {
        bytes += static_cast<char>(bytes.size() * 7 + bytes.size() / 251);
    }
    write("home/source.bin", bytes);
    const std::string file = write("request", request("upload", "<path>source.bin</path>"));
    const std::string reply = out({"call", file});
    const std::size_t first = reply.find("<chunks>");
    const std::string chunks = reply.substr(first, reply.find("</chunks>") + 9 - first);
    EXPECT_EQ(linesOf(chunks), 1 + 3 * 6U) << "three pieces";

    write("request", request("download", "<path>target.bin</path>" + chunks));
    (void)out({"call", file}); // no progress where nobody watches
    EXPECT_TRUE(contentOf(path("home/target.bin")) == bytes);
    EXPECT_EQ(run({"call", file}).err, "hbx: " + file + ": /data/file/download: Cannot open dst file \"" +
                                           path("home/target.bin") + "\": File exists [17]\n");

    write("home/so\x7Furce", bytes);
    write("request", request("upload", "<path>so\x7Furce</path>"));
    const Terminal terminal;
    EXPECT_EQ(run({"call", file}, {.err = terminal.name()}).code, 0);
    const std::string shown = terminal.shown();
    EXPECT_EQ(shown.rfind("\rso?urce [" + std::string(40, ' ') + "] 0%\r", 0), 0U) << shown;
    EXPECT_NE(shown.find("] 43%\r"), std::string::npos) << shown;
    EXPECT_NE(shown.find("\rso?urce [" + std::string(40, '=') + "] 100%\r\n"), std::string::npos) << shown;
}

TEST_F(ProgramTest, UploadsPartsAndSaysWhatIsWrong) {
    write("home/source", "0123456789");
    std::filesystem::resize_file(write("home/large", ""), (std::uintmax_t{64} << 20) + 1);
    const std::pair<std::string, std::string> rows[] = {
        {"<path>source</path><file_offset>3</file_offset><size>4</size>", ""},
        {"<path>source</path><size>9223372036854775807</size>", "Src file size was changed "},
        {"<path>none</path>", "Cannot open src file \"" + path("home/none") + "\": No such file or dir"},
        {"<path>.</path><size>1</size>", "Cannot read from file \"" + path("home/.") + "\": Is a directory"},
        {"", "path is missing\n"},
        {"<path>large</path>", "more than 67108864 bytes: "},
    };
    for (const auto& [arguments, error] : rows) {
        const Ended ended = run({"call", write("request", request("upload", arguments))});
        EXPECT_EQ(ended.code, error.empty() ? 0 : 3) << arguments;
        const std::string complaint = "hbx: " + path("request") + ": /data/file/upload: " + error;
        EXPECT_EQ(ended.err.rfind(error.empty() ? "" : complaint, 0), 0U) << ended.err;
        EXPECT_EQ(linesOf(ended.err), error.empty() ? 0U : 1U);
    }
}

} // namespace
} // namespace HBX
