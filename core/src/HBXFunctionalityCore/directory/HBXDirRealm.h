#pragma once

#include <string>

#include <HBXFunctionalityCore/directory/HBXRealm.h>
#include <HBXFunctionalityCore/security/HBXAuthName.h>

namespace HBX {

/// A realm whose principals are looked up on a directory server.
struct HBX_EXPORT HBXDirRealm : HBXRealm {
    static constexpr int kType = 1;

    HBXAuthName authName;                      ///< as whom the agent logs in on the server
    std::string server;                        ///< host name or IP address
    int port = 0;                              ///< never 0
    std::string baseDn;                        ///< below it everything of the realm lies
    std::string principalsDn;                  ///< below it the principals lie; ends with `baseDn`
    HBXOptionalProperty<std::string> password; ///< of `authName`; never on a message and not compared

    HBXDirRealm() { type = kType; }

    /// Whether there are server and port, and `principalsDn` ends with `baseDn`. The ends are compared byte
    /// by byte without regard to the case of letters; an empty `baseDn` fits every one.
    [[nodiscard]] bool isValid() const;

    /// Takes over a valid directory realm; an own password stays. -1, with "Invalid realm type" or "Invalid
    /// realm parameters", for every other one.
    int set(const HBXRealm& other) override;

    /// Makes a realm of arbitrary members valid.
    void completeSample();

    static const HBXRecordTable table;

    /// -1 for a realm of another type or one that is not valid.
    struct HBX_EXPORT Reader {
        int operator()(const HBXMessageIterator& it, HBXDirRealm& realm) const;
    };
    /// -1 and nothing written for a realm that is not valid.
    struct HBX_EXPORT Writer : HBXWriterMarks<HBXDirRealm> {
        int operator()(HBXMessageIterator& it, const HBXDirRealm& realm) const;
    };
};

} // namespace HBX
