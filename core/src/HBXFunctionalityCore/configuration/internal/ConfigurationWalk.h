#pragma once

#include <HBXFunctionalityCore/configuration/internal/ConfigurationElements.h>
#include <HBXFunctionalityCore/identity/HBXEID.h>
#include <HBXMessage/HBXMessageIterator.h>

/// The ways to the settings that the data model itself reads and writes. A null cursor, that of an empty
/// configuration, goes nowhere.
namespace HBX::internal {

/// Goes from the message's root to the settings of a section.
inline bool seekSection(const HBXMessageIterator* it, int section) {
    return it != nullptr && it->seekRoot() == 0 && it->seek(kTop) == 0 && it->seek(section) == 0 &&
           it->seek(kSettings) == 0;
}

/// The same, creating what is missing.
inline bool putSection(HBXMessageIterator* it, int section) {
    return it != nullptr && it->seekRoot() == 0 && it->putChild(kTop) == 0 && it->putChild(section) == 0 &&
           it->putChild(kSettings) == 0;
}

/// Goes from a list onto its first entry of this identifier; does not move when there is none.
inline bool seekEntry(const HBXMessageIterator& it, const HBXEID& id) {
    if (it.firstChild(kEntry) != 0) {
        return false;
    }
    do {
        HBXEID found;
        if (it.getObject(found, kIdentifier) == 0 && found == id) {
            return true;
        }
    } while (it.nextSibling(kEntry) == 0);
    it.seekUp();
    return false;
}

/// Calls `visit(id)` on each entry of the list under the cursor whose identifier reads, in order.
template <class Visit>
void visitEntries(const HBXMessageIterator& it, const Visit& visit) {
    if (it.firstChild(kEntry) != 0) {
        return;
    }
    do {
        HBXEID id;
        if (it.getObject(id, kIdentifier) == 0) {
            visit(id);
        }
    } while (it.nextSibling(kEntry) == 0);
    it.seekUp();
}

/// Removes the first entry of this identifier from the list under the cursor.
inline int removeEntry(HBXMessageIterator& it, const HBXEID& id) {
    return seekEntry(it, id) ? it.deleteFromChild() : -1;
}

} // namespace HBX::internal
