#include "ProgramTest.h"

namespace HBX {
namespace {

/// What a reply takes over from the envelope of its request.
Words envelopeOf(const std::string& text) {
    return matches(text, "( (?:origin|id|session|session_id)=\"[^\"]*\")");
}

/// The elements of the first three levels.
Words roadOf(const std::string& text) { return matches(text, "\n {2,6}<([a-z_]+)[ />]"); }

/// All values of a name, in document order.
Words valuesOf(const std::string& text, const std::string& name) {
    return matches(text, "<" + name + "(?: [^>]*)?>([^<]*)</");
}

TEST_F(ProgramTest, EverySampleIsAnswered) {
    const Words files = filesIn(sample("requests"));
    ASSERT_GE(files.size(), 20U);
    for (const char* zone : {"UTC", "America/New_York", "Australia/Lord_Howe"}) {
        for (const std::string& file : files) {
            const std::string request = out({"message", "show", file});
            const std::string reply = out({"call", file}, {.zone = zone});
            EXPECT_EQ(roadOf(reply), roadOf(request)) << file;
            EXPECT_EQ(envelopeOf(reply), envelopeOf(request)) << file;
            std::filesystem::remove(path("home/environments.cache")); // each is answered alone
            const Streams streams = {.in = file, .out = "reply", .zone = zone};
            EXPECT_EQ(out({"call", "--binary", "-"}, streams).rfind("HBXM", 0), 0U);
            EXPECT_EQ(envelopeOf(out({"message", "show", path("reply")})), envelopeOf(request)) << file;
        }
    }
}

TEST_F(ProgramTest, RepliesHoldTheResults) {
    const std::tuple<std::string, std::string, Words> rows[] = {
        {"schedule-weekly-every-2-weeks.xml",
         "time_text",
         {"Monday 2024-04-08 03:30 +02:00", "Wednesday 2024-04-10 03:30 +02:00",
          "Monday 2024-04-22 03:30 +02:00", "Wednesday 2024-04-24 03:30 +02:00",
          "Monday 2024-05-06 03:30 +02:00", "Wednesday 2024-05-08 03:30 +02:00"}},
        {"schedule-daily-weekends-until-may.xml", "ending", {"the schedule is over"}},
        {"schedule-explain-last-day.xml",
         "text",
         {"On day 15 and the last day of every month at 00:00, from Tuesday 2024-01-02 00:00 +01:00."}},
        {"config-get.xml", "value", {"2"}},
        {"config-list.xml", "path", Words(2, "/server_group/clients/entry/id")},
        {"backup-parse.xml", "backup_id", {"nightly/0042"}},
        {"backup-type-name.xml", "name", {"incremental"}},
        {"alert-resource.xml",
         "render>\\s*<text",
         {"Resource memory yellow alert on environment 01234567-89ab-cdef-0011-223344556677 current value: "
          "4000000000 soft limit:  hard limit: 4294967296"}},
        {"file-download.xml", "size", {"13"}},
        {"clock-universal.xml", "end_time", {"1711639800"}},
        {"clock-shift.xml", "end_time", {"1711616400+0200"}},
        {"voc-features-by-tags.xml", "id", {"firewall.rules", "firewall.chains"}},
        {"voc-categories.xml", "id", {"environment", "container", "network", "resource", "firewall"}},
        {"voc-has.xml", "tag", {"firewall", "network", "security"}},
        {"security-parse.xml", "eid", {"01234567-89ab-cdef-0011-223344556677"}},
        {"security-local.xml", "text", {"S-1-8192-1732584193-4023233417-857870592-2003195204-0"}},
        {"security-well-known.xml", "sid", {"AQEAAAAAAAUHAAAA"}},
        {"security-administrator.xml", "allow", {"1"}},
        {"security-env-administrator.xml", "allow", {"1"}},
        {"security-restrict.xml",
         "restricted_groups[^/]*<group_sid",
         {"AQUAAAAAIAABI0VniavN7wARIjNEVWZ3AAAAAA=="}},
    };
    for (const auto& [file, element, values] : rows) {
        const std::string reply = out({"call", sample("requests/" + file)}, {.zone = "Europe/Berlin"});
        EXPECT_EQ(valuesOf(reply, element), values) << file;
    }
    const Words told = valuesOf(out({"call", sample("requests/clock-now.xml")}), "time");
    EXPECT_NEAR(std::stod(told.at(0)), static_cast<double>(time(nullptr)), 60);
}

TEST_F(ProgramTest, FailedRequestsAreAnsweredWithAnError) {
    const std::tuple<std::string, std::string, std::string> rows[] = {
        {"1", "two-operators", ": one operator is expected here"},
        {"2", "unknown-operator", "/firewall: there is no such operator"},
        {"3", "unknown-verb", "/schedule/shift: the operator has no such verb"},
        {"4", "no-trigger", "/schedule/next: trigger is missing"},
        {"4", "unknown-trigger-type", "/schedule/next: trigger (scheduler:hourly_trigger) cannot be read"},
        {"4", "count-too-large", "/schedule/next: count is 1 to 1000"},
        {"4", "sid-text-without-authority", "/security/parse: text is no security identifier"},
        {"4", "environment-without-identifier", "/environments/insert: eid is null"},
        {"5", "shift-beyond-range", "/clock/shift: the interval would leave the range of 32-bit seconds"},
        {"4", "backup-of-another-type", "/backup/parse: uri is no backup reference"},
        {"4", "alert-of-unknown-kind", "/alert/render: event_data is of no kind of alert"},
        {"4", "file-offset-below-zero", "/file/upload: file_offset and size are not negative"},
        {"4", "file-chunk-cut-off", "/file/download: chunks: one has not as many bytes as it says"},
    };
    for (const auto& [code, name, complaint] : rows) {
        const std::string file = sample("bad/" + name + ".xml");
        const Ended ended = run({"call", file});
        EXPECT_EQ(ended.err, "hbx: " + file + ": /data" + complaint + '\n');
        const std::string message = complaint.substr(complaint.find(": ") + 2);
        EXPECT_EQ(valuesOf(ended.out, "(?:code|message)"), (Words{code, message})) << name;
        EXPECT_EQ(roadOf(ended.out), (Words{"data", "error", "code", "message"}));
        EXPECT_EQ(envelopeOf(ended.out), envelopeOf(contentOf(file)));
    }
    for (const std::string& file : filesIn(sample("bad"))) { // also what is no message or no request
        const Ended ended = run({"call", file});
        EXPECT_EQ(ended.code, 3) << file;
        EXPECT_EQ(ended.err.rfind("hbx: " + file + ": ", 0), 0U) << ended.err;
        EXPECT_EQ(linesOf(ended.err), 1U);
    }
}

TEST_F(ProgramTest, RequestsShareTheEnvironmentCache) {
    const std::string host = "4b7e0a91-52c3-4f0d-8d1e-2a9c6f3b7e10";
    const std::string web = "9d2f6c38-0b4e-4a57-b1c6-7e8f1a2d3c11";
    // A request, and the identifiers and types in its reply.
    const std::tuple<std::string, Words, Words> rows[] = {
        {"3-get", {}, {}},
        {"1-insert-host", {host}, {}},
        {"2-insert-container", {web}, {}},
        {"3-get", {host, web}, {"host", "container"}},
        {"5-list-by-type", {host}, {"host"}},
        {"6-update", {web}, {}},
        {"4-list-children", {web}, {"container"}}, // the type was kept
        {"7-remove", {web}, {}},
        {"7-remove", {}, {}},
    };
    for (const auto& [name, eids, types] : rows) {
        const std::string file = sample("requests/environments-" + name + ".xml");
        const std::string reply = out({"call", "--cache", path("cache"), file});
        EXPECT_EQ(valuesOf(reply, "eid"), eids) << name;
        EXPECT_EQ(valuesOf(reply, "env_type"), types) << name;
    }
    EXPECT_FALSE(std::filesystem::exists(path("home/environments.cache")));
    const std::string notes = write("notes", "mine");
    const Ended refused = run({"call", "--cache", notes, sample("requests/environments-3-get.xml")});
    EXPECT_EQ(refused.code, 3);
    EXPECT_EQ(valuesOf(refused.out, "code"), Words{"6"});
    EXPECT_EQ(contentOf(notes), "mine");
}

TEST_F(ProgramTest, EveryArgumentOfARequestMustBeGood) {
    const std::string end = "<trigger hbx:tns='scheduler' hbx:type='once_trigger'><start_time>5</start_time>"
                            "</trigger></next></schedule>";
    const std::pair<std::string, Words> rows[] = {
        {"<clock/>", {"one verb is expected here"}},
        {"<schedule><next><time>-1</time><count>1</count>" + end, {"time is negative"}},
        {"<schedule><next><time>1</time><count>99999999999</count>" + end, {"count cannot be read"}},
        {"<schedule><next><time>9223372036854775807</time><count>1</count>" + end, {}},
    };
    for (const auto& [data, complaint] : rows) {
        const std::string file = write("request", messageText("<data>" + data + "</data>"));
        EXPECT_EQ(valuesOf(run({"call", file}).out, "message"), complaint) << data;
    }
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
