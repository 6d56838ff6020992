#include <cstdio>
#include <cstdlib>
#include <string>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXFunctionalityCore/HBXFunctionalityCore.h>

using namespace HBX;

constexpr std::int64_t kMonday = 1704103200; // 2024-01-01 10:00 UTC
constexpr std::int64_t kDay = 86400;         // seconds

/// A task that was due at 10:00 UTC every day, or every second day, and ran last on that Monday.
HBXScheduleTask dailyTask(const char* name, int daysInterval) {
    HBXScheduleTask task;
    const auto trigger = boost::make_shared<HBXSchedulerDailyTrigger>();
    trigger->startTime = kMonday;
    trigger->daysInterval = daysInterval;
    task.id = HBXGUID::generate();
    task.name = name;
    task.trigger = trigger;
    task.lastRun = kMonday;
    return task;
}

/// Records go into a message one by one: which tasks are overdue on Tuesday, at 11:00?
int writeRequest(const std::string& file) {
    const auto request = adoptMessage(HBXMsgFactory::createNew());
    request->setID("client-1", true);
    const std::unique_ptr<HBXMessageIterator> it(request->newIterator());
    for (const char* name : {"data", "schedule", "overdue"}) {
        it->putChild(name);
    }
    it->putValueTime(kMonday + kDay + 3600, "time");
    it->putChild("entries");
    for (const HBXScheduleTask& task : {dailyTask("backup", 1), dailyTask("report", 2)}) {
        it->newChild("entry");
        it->putObject(task, 0);
        it->seekUp();
    }
    return request->toTextFile(file);
}

int printReply(const std::string& file) {
    const auto reply = adoptMessage(HBXMsgFactory::createNew());
    const std::unique_ptr<HBXMessageIterator> it(reply->newIterator());
    if (reply->fromTextFile(file) != 0 || it->seek("/data/schedule/overdue/entries") != 0) {
        return -1;
    }
    for (int found = it->firstChild("name"); found == 0; found = it->nextSibling("name")) {
        std::string name;
        it->getValue(name, 0);
        std::printf("overdue: %s\n", name.c_str());
    }
    return 0;
}

/// Asks an operator, here a program that reads the request from one file and writes the reply to another.
int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: client OPERATOR FOLDER\n");
        return 2;
    }
    const std::string request = std::string(argv[2]) + "/request.xml";
    const std::string reply = std::string(argv[2]) + "/reply.xml";
    if (writeRequest(request) != 0 || std::system((argv[1] + (" " + request) + " " + reply).c_str()) != 0 ||
        printReply(reply) != 0) {
        std::fprintf(stderr, "%s\n", getErrorMessage().c_str());
        return 1;
    }
}
