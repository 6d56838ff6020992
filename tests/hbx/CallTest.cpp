#include "ProgramTest.h"

#include <regex>

namespace HBX {
namespace {

using test::Cursor;
using test::Message;

Message parse(const std::string& bytes) {
    const bool isBinary = bytes.rfind("HBXM", 0) == 0;
    const Message message = isBinary ? test::parseMessage(bytes) : test::newMessage();
    EXPECT_TRUE(message != nullptr && (isBinary || message->fromText(bytes.c_str(), nullptr) == 0)) << bytes;
    return message;
}

/// "data/schedule/next": down the first children, three levels.
std::string roadOf(const Message& message) {
    const Cursor it(message->newIterator());
    std::string road;
    for (int level = 0; level < 3 && it->firstChild() == 0; ++level) {
        road.append("/").append(it->curName());
    }
    return road;
}

std::string envelopeOf(const Message& message) {
    std::string id, session, sessionId, origin;
    message->getID(id);
    message->getSession(session);
    message->getSessionID(sessionId);
    message->getOrigin(origin);
    return id + '|' + session + '|' + sessionId + '|' + origin;
}

/// All values of a name, in document order, one a line.
std::string valuesOf(const std::string& text, const std::string& name) {
    std::string values;
    const std::string open = "<" + name + ">";
    for (std::size_t at = text.find(open); at != std::string::npos; at = text.find(open, at + 1)) {
        const std::size_t start = at + open.size();
        values += text.substr(start, text.find('<', start) - start) + '\n';
    }
    return values;
}

TEST_F(ProgramTest, EverySampleIsAnswered) {
    const Words files = filesIn(sample("requests"));
    ASSERT_GE(files.size(), 20U);
    for (const char* zone : {"UTC", "America/New_York", "Australia/Lord_Howe"}) {
        for (const std::string& file : files) {
            const Message request = parse(contentOf(file));
            const Message reply = parse(out({"call", file}, {.zone = zone}));
            EXPECT_EQ(roadOf(reply), roadOf(request)) << file;
            EXPECT_EQ(envelopeOf(reply), envelopeOf(request)) << file;
            std::filesystem::remove(path("home/environments.cache")); // each is answered alone
            EXPECT_EQ(parse(out({"call", "--binary", "-"}, {.in = file, .zone = zone}))->messageType(), 0);
        }
    }
}

TEST_F(ProgramTest, RepliesHoldTheResults) {
    const struct {
        const char* file;
        const char* element;
        const char* values;
    } rows[] = {
        {"schedule-weekly-every-2-weeks.xml", "time_text",
         "Monday 2024-04-08 03:30 +02:00\nWednesday 2024-04-10 03:30 +02:00\n"
         "Monday 2024-04-22 03:30 +02:00\nWednesday 2024-04-24 03:30 +02:00\n"
         "Monday 2024-05-06 03:30 +02:00\nWednesday 2024-05-08 03:30 +02:00\n"},
        {"schedule-daily-every-2-days.bin", "note",
         "at 12:00, 1 hour later than 11:00 and the clock was set 1 hour forward since the run before\n"
         "at 12:00, 1 hour later than 11:00\nat 12:00, 1 hour later than 11:00\n"
         "at 12:00, 1 hour later than 11:00\n"},
        {"schedule-explain-last-day.xml", "text",
         "On day 15 and the last day of every month at 00:00, from Tuesday 2024-01-02 00:00 +01:00.\n"},
        {"config-get.xml", "value", "2\n"},
        {"config-list.xml", "path", "/server_group/clients/entry/id\n/server_group/clients/entry/id\n"},
        {"backup-parse.xml", "backup_id", "nightly/0042\n"},
        {"backup-type-name.xml", "name", "incremental\n"},
        {"alert-resource.xml", "text",
         "Resource memory yellow alert on environment 01234567-89ab-cdef-0011-223344556677 current value: "
         "4000000000 soft limit:  hard limit: 4294967296\n"},
        {"file-upload.xml", "size", "16\n"},
        {"file-download.xml", "size", "13\n"},
        {"clock-universal.xml", "end_time", "1711639800\n"},
        {"voc-features-by-tags.xml", "id", "firewall.rules\nfirewall.chains\n"},
        {"voc-categories.xml", "id", "environment\ncontainer\nnetwork\nresource\nfirewall\n"},
        {"voc-has.xml", "tag", "firewall\nnetwork\nsecurity\n"},
        {"security-parse.xml", "eid", "01234567-89ab-cdef-0011-223344556677\n"},
        {"security-local.xml", "text", "S-1-8192-1732584193-4023233417-857870592-2003195204-0\n"},
        {"security-well-known.xml", "sid", "AQEAAAAAAAUHAAAA\n"},
        {"security-administrator.xml", "allow", "1\n"},
        {"security-env-administrator.xml", "allow", "1\n"},
    };
    for (const auto& row : rows) {
        const std::string reply = out({"call", sample("requests/") + row.file}, {.zone = "Europe/Berlin"});
        EXPECT_EQ(valuesOf(reply, row.element), row.values) << row.file;
    }
    const std::string restricted = out({"call", sample("requests/security-restrict.xml")});
    EXPECT_NE(restricted.find(">AQUAAAAAIAABI0VniavN7wARIjNEVWZ3AAAAAA==</group_sid>\n"
                              "          </restricted_groups>"),
              std::string::npos)
        << restricted;
    const std::string shifted = out({"call", sample("requests/clock-shift.xml")});
    EXPECT_NE(shifted.find(">1711616400+0200</end_time>"), std::string::npos) << shifted;
    const std::string told = out({"call", sample("requests/clock-now.xml")});
    EXPECT_NEAR(std::stod(valuesOf(told, "time")), static_cast<double>(time(nullptr)), 60);
}

TEST_F(ProgramTest, FailedRequestsAreAnsweredWithAnError) {
    const struct {
        const char* file;
        const char* code;
        const char* place; ///< below /data
        const char* message;
    } rows[] = {
        {"two-operators.xml", "1\n", "", "one operator is expected here\n"},
        {"unknown-operator.xml", "2\n", "/firewall", "there is no such operator\n"},
        {"unknown-verb.xml", "3\n", "/schedule/shift", "the operator has no such verb\n"},
        {"no-trigger.xml", "4\n", "/schedule/next", "trigger is missing\n"},
        {"unknown-trigger-type.xml", "4\n", "/schedule/next",
         "trigger (scheduler:hourly_trigger) cannot be read\n"},
        {"count-too-large.xml", "4\n", "/schedule/next", "count is 1 to 1000\n"},
        {"no-interval-in-weeks.xml", "5\n", "/schedule/next",
         "the trigger's numbers name no run after Thursday 2024-03-28 09:00 +00:00\n"},
        {"weekday-out-of-range.xml", "5\n", "/schedule/next",
         "the calendar refuses: Weekday is out of range 0..6\n"},
        {"sid-text-without-authority.xml", "4\n", "/security/parse", "text is no security identifier\n"},
        {"principal-type-out-of-range.xml", "4\n", "/security/local", "principal_type is 1 to 4\n"},
        {"config-no-such-setting.xml", "5\n", "/config/get", "there is no value at /system/log_levels\n"},
        {"config-nameless-step.xml", "5\n", "/config/set", "/system//log_level: no setting can be there\n"},
        {"environment-without-identifier.xml", "4\n", "/environments/insert", "eid is null\n"},
        {"environment-type-too-long.xml", "4\n", "/environments/update", "env_type has 1 to 16 bytes\n"},
        {"shift-beyond-range.xml", "5\n", "/clock/shift",
         "the interval would leave the range of 32-bit seconds\n"},
        {"backup-of-another-type.xml", "4\n", "/backup/parse", "uri is no backup reference\n"},
        {"backup-identifier-in-one-part.xml", "4\n", "/backup/make",
         "backup://nightly/etc/hosts would read back as identifier \"nightly/etc\", path \"hosts\"\n"},
        {"alert-of-unknown-kind.xml", "4\n", "/alert/render", "event_data is of no kind of alert\n"},
        {"file-offset-below-zero.xml", "4\n", "/file/upload", "file_offset and size are not negative\n"},
        {"file-chunk-cut-off.xml", "4\n", "/file/download", "chunks: one has not as many bytes as it says\n"},
        {"file-chunk-left-out.xml", "4\n", "/file/download", "chunks: one does not follow the one before\n"},
    };
    for (const auto& row : rows) {
        const std::string file = sample("bad/") + row.file;
        const Ended ended = run({"call", file});
        EXPECT_EQ(ended.code, 3) << row.file;
        EXPECT_EQ(valuesOf(ended.out, "code"), row.code) << row.file;
        EXPECT_EQ(valuesOf(ended.out, "message"), row.message) << row.file;
        EXPECT_EQ(ended.err, "hbx: " + file + ": /data" + row.place + ": " + row.message);
        EXPECT_EQ(roadOf(parse(ended.out)), "/data/error/code");
        EXPECT_EQ(envelopeOf(parse(ended.out)), envelopeOf(parse(contentOf(file))));
    }
    for (const std::string& file : filesIn(sample("bad"))) { // also what is no message or no request
        const Ended ended = run({"call", file});
        EXPECT_EQ(ended.code, 3) << file;
        EXPECT_EQ(ended.err.rfind("hbx: " + file + ": ", 0), 0U) << ended.err;
        EXPECT_EQ(linesOf(ended.err), 1U);
    }
}

TEST_F(ProgramTest, RequestsShareTheEnvironmentCache) {
    const std::string host = "4b7e0a91-52c3-4f0d-8d1e-2a9c6f3b7e10\n";
    const std::string web = "9d2f6c38-0b4e-4a57-b1c6-7e8f1a2d3c11\n";
    const struct {
        const char* file;
        std::string eids; ///< in the reply
        std::string types = "";
    } rows[] = {
        {"environments-3-get.xml", ""},
        {"environments-1-insert-host.xml", host},
        {"environments-2-insert-container.xml", web},
        {"environments-3-get.xml", host + web, "host\ncontainer\n"},
        {"environments-5-list-by-type.xml", host, "host\n"},
        {"environments-6-update.xml", web},
        {"environments-4-list-children.xml", web, "container\n"}, // the type was kept
        {"environments-7-remove.xml", web},
        {"environments-7-remove.xml", ""},
    };
    for (const auto& row : rows) {
        const std::string reply = out({"call", "--cache", path("cache"), sample("requests/") + row.file});
        const std::string plain = std::regex_replace(reply, std::regex(" hbx:ns=\"env\""), "");
        EXPECT_EQ(valuesOf(plain, "eid"), row.eids) << row.file;
        EXPECT_EQ(valuesOf(plain, "env_type"), row.types) << row.file;
    }
    EXPECT_FALSE(std::filesystem::exists(path("home/environments.cache")));
    const std::string notes = write("notes", "mine");
    const Ended refused = run({"call", "--cache", notes, sample("requests/environments-3-get.xml")});
    EXPECT_EQ(refused.code, 3);
    EXPECT_EQ(valuesOf(refused.out, "code"), "6\n");
    EXPECT_EQ(contentOf(notes), "mine");
}

TEST_F(ProgramTest, EveryArgumentOfARequestMustBeGood) {
    const std::string begin = "<data><schedule><next><trigger hbx:tns='scheduler' hbx:type='once_trigger'>"
                              "<start_time>5</start_time></trigger>";
    const std::pair<const char*, const char*> rows[] = {
        {"<time>soon</time><count>1</count>", "time cannot be read\n"},
        {"<time>-1</time><count>1</count>", "time is negative\n"},
        {"<time>1</time><count>99999999999</count>", "count cannot be read\n"},
        {"<time>9223372036854775807</time><count>1</count>", ""},
    };
    for (const auto& [arguments, message] : rows) {
        const std::string text = messageText(begin + arguments + "</next></schedule></data>");
        EXPECT_EQ(valuesOf(run({"call", write("request", text)}).out, "message"), message) << arguments;
    }
    const std::string twice = "<data><clock><now/><now/></clock></data>";
    EXPECT_EQ(valuesOf(run({"call", write("request", messageText(twice))}).out, "code"), "1\n");
}

TEST_F(ProgramTest, AFullDiskIsSaid) {
    const std::string file = sample("requests/schedule-once.xml");
    for (const Words& words : {Words{"call", file, file}, Words{"message", "show", file}, Words{"--help"},
                               Words{"schedule", "explain", "--json", file}}) {
        const Ended ended = run(words, {.out = "/dev/full"});
        EXPECT_EQ(ended.code, 7);
        EXPECT_EQ(ended.err, "hbx: standard output: No space left on device\n");
    }
}

} // namespace
} // namespace HBX
