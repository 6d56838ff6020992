#include <algorithm>
#include <array>
#include <optional>
#include <vector>

#include <gmock/gmock.h>

#include <HBXCommon/HBXErrorMessage.h>

#include "RandomEdits.h"

/// Trees that come from random edits: both forms and all copies of them, and a plain model beside them.
namespace HBX::test {
namespace {

using It = HBXMessageIterator;

std::string show(const HBXMessageIterator& it) {
    std::string dump = it.curName() + '#' + (it.curID() < 0x40000000 ? std::to_string(it.curID()) : "-") +
                       '{' + it.curType() + '|' + std::to_string(std::min(it.curNamespaceID(), 0x40000000));
    std::string_view text;
    bool xml = false;
    if (it.rawValue(0, text, xml) == 0) {
        dump.append(xml ? "|x'" : "|'").append(text).append("'");
    }
    std::vector<int> attributes(std::begin(kNumbers), std::end(kNumbers));
    for (const std::string& name : kNames) {
        attributes.push_back(it.idOfName(name));
    }
    for (std::size_t i = 0; i < attributes.size(); ++i) {
        std::string value;
        dump += it.getAttr(value, attributes[i]) == 0 ? '@' + std::to_string(i) + '=' + value : "";
    }
    if (it.firstChild() == 0) {
        do {
            dump += show(it);
        } while (it.nextSibling() == 0);
        it.seekUp();
    }
    return dump + '}';
}

/// Whole trees, parts and copies out of either cursor, the copies also straight to bytes.
void expectSameParts(const It& a, const It& b) {
    for (int more = 0; more == 0; more = a.firstChild() + b.firstChild()) {
        std::vector<std::string> copies;
        for (const It* from : {&a, &b}) {
            const auto copy = [&](It& to) {
                return to.saveNamespace(283) + to.newChild(1008) + to.copyToChild(from);
            };
            const Cursor copied = newCursor();
            EXPECT_EQ(copy(*copied) + encode(copy, copies.emplace_back()), 0);
            copies.push_back(bytesOf(*copied));
        }
        EXPECT_THAT(copies, ::testing::Each(copies[0]));
        EXPECT_EQ(bytesOf(a), bytesOf(b));
        EXPECT_EQ(bytesFromChild(a), bytesFromChild(b));
        EXPECT_EQ(takeText(a.toTextFromChild()), takeText(b.toTextFromChild()));
        EXPECT_EQ(bytesOf(adoptMessage(a.copyMessage())), bytesOf(adoptMessage(b.copyMessage())));
        EXPECT_EQ(secondCursor(a)->curName(), b.curName());
    }
    a.seekRoot();
    b.seekRoot();
}

TEST(TreeProperty, EditedTreesSurviveBothFormsAndDeepCopies) {
    Random random(1);
    for (int round = 0; round < 600 && !testing::Test::HasFailure(); ++round) {
        SCOPED_TRACE(round);
        const Cursor it = newCursor();
        for (std::size_t steps = random() % 120; steps > 0; --steps) {
            const Edit edit = random() % 2 == 0 ? oneOf(random, kAppends) : oneOf(random, kChanges);
            edit(*it, Draw(random));
        }
        it->seekRoot();
        const std::string bytes = bytesOf(*it);
        const std::string dump = show(*it);
        const Message fromBytes = parseMessage(bytes);
        ASSERT_NE(fromBytes, nullptr) << getErrorMessage();
        EXPECT_EQ(bytesOf(fromBytes), bytes);
        EXPECT_EQ(show(*rootOf(fromBytes)), dump);
        EXPECT_EQ(readInPlace(bytes,
                              [&](const It& inPlace) {
                                  EXPECT_EQ(show(inPlace), dump);
                                  expectSameParts(inPlace, *it);
                                  return 0;
                              }),
                  0);
        for (const char* indent : {"", " "}) { // a fresh tree, so the bytes do not tell how the old one came
            const Message fromText = newMessage();
            const std::string text = takeText(it->getMessage()->toText(nullptr, indent));
            ASSERT_EQ(fromText->fromText(text.c_str(), nullptr), 0) << getErrorMessage() << '\n' << text;
            EXPECT_EQ(bytesOf(fromText), bytes) << text;
        }
        EXPECT_EQ(bytesOf(adoptMessage(it->getMessage()->copy(true))), bytes);
    }
}

// --- the model ---

struct Plain {
    int id = 0;
    std::optional<std::string> value;
    std::weak_ptr<Plain> parent;
    std::vector<std::shared_ptr<Plain>> children;
};

using Place = std::shared_ptr<Plain>;

Place adopt(const Place& parent, Place child) {
    child->parent = parent;
    parent->children.push_back(child);
    return child;
}

Place add(const Place& parent, int id) {
    return adopt(parent, std::make_shared<Plain>(Plain{id, {}, {}, {}}));
}

/// The first child of this id (0: of any) from an index on.
Place find(const Place& parent, int id, std::size_t from = 0) {
    for (std::size_t i = from; i < parent->children.size(); ++i) {
        if (id == 0 || parent->children[i]->id == id) {
            return parent->children[i];
        }
    }
    return nullptr;
}

Place after(const Place& place, int id) {
    const Place parent = place->parent.lock();
    if (parent == nullptr) {
        return nullptr;
    }
    const auto at = std::find(parent->children.begin(), parent->children.end(), place);
    return find(parent, id, static_cast<std::size_t>(at - parent->children.begin()) + 1);
}

Place copyOf(const Place& source) {
    auto copy = std::make_shared<Plain>(Plain{source->id, source->value, {}, {}});
    for (const Place& child : source->children) {
        adopt(copy, copyOf(child));
    }
    return copy;
}

void eraseAll(Plain& parent, int id) {
    std::erase_if(parent.children, [&](const Place& child) { return child->id == id; });
}

/// As the tree shows itself.
std::string show(const Plain& place) {
    std::string dump = "#" + std::to_string(place.id) + "{|0";
    if (place.value) {
        dump += "|'" + *place.value + "'";
    }
    for (const Place& child : place.children) {
        dump += show(*child);
    }
    return dump + '}';
}

/// Everything a cursor offers, on an element that is gone.
void expectStale(It& it) {
    const Cursor fresh = newCursor();
    std::string value = "kept";
    int number = 7;
    std::int64_t time = 7;
    char* data = nullptr;
    EXPECT_EQ(it.curID() + it.curNamespaceID(), 0);
    EXPECT_EQ(it.curName() + it.curType(), "");
    const int moves[] = {it.seekUp(),     it.seek(5),       it.seek("name"),   it.seekPresence(5),
                         it.firstChild(), it.nextSibling(), it.nextSibling(5), secondCursor(it)->seekUp()};
    const int reads[] = {it.getValue(number, 0), it.getValue(value, 5), it.getValue(value, "nobody"),
                         it.getAttr(value, 1026), it.getValueTimeZone(time, number, 5)};
    const int trees[] = {fresh->copyToChild(&it), deserializeToChild(it, bytesOf(it)),
                         it.serializeFromChild(&data, &number), it.getMessage()->deserialize(&it, nullptr)};
    EXPECT_THAT(tryEveryChange(it), ::testing::Each(-1));
    EXPECT_THAT(moves, ::testing::Each(-1));
    EXPECT_THAT(reads, ::testing::Each(-1));
    EXPECT_THAT(trees, ::testing::Each(-1));
    EXPECT_EQ(it.toTextFromChild(), nullptr);
    EXPECT_EQ(it.copyMessage(), nullptr);
    EXPECT_TRUE(value == "kept" && number == 7 && time == 7 && data == nullptr);
}

/// Two cursors on a tree, and the same two on the model, where removed elements are gone.
class EditRun {
public:
    explicit EditRun(std::uint64_t seed) : random_(seed), cursors_{newCursor(), nullptr} {
        cursors_[1] = secondCursor(*cursors_[0]);
        places_ = {root_, root_};
    }

    void step() {
        const std::size_t which = random_() % 2;
        It& it = *cursors_[which];
        if (random_() % 16 == 0) {
            EXPECT_EQ(it.seekTo(*cursors_[1 - which]), 0);
            places_[which] = places_[1 - which];
        }
        Place here = places_[which].lock();
        if (here == nullptr) {
            expectStale(it);
            EXPECT_EQ(it.seekRoot(), 0);
            here = root_;
        } else if (random_() % 2 == 0) {
            here = move(it, here);
        } else {
            here = change(it, here, places_[1 - which].lock(), *cursors_[1 - which]);
        }
        places_[which] = here;
    }

    void check() {
        const Cursor root = secondCursor(*cursors_[0], false);
        EXPECT_EQ(show(*root), show(*root_));
        const auto walk = [&](const It& it) {
            Place here = root_;
            for (int steps = 0; steps < 50; ++steps) {
                here = move(it, here);
            }
            return 0;
        };
        EXPECT_EQ(readInPlace(bytesOf(*root), walk), 0);
        EXPECT_EQ(readTrusted(bytesOf(*root), walk), 0);
    }

    void shrinkWhenLarge() {
        const Cursor root = secondCursor(*cursors_[0], false);
        while (show(*root_).size() > 3000) {
            EXPECT_EQ(root->deleteChild(root_->children[0]->id), 0);
            eraseAll(*root_, root_->children[0]->id);
        }
    }

private:
    int someId() {
        constexpr int kIds[] = {5, 69, 133, 6}; // three share a bit of a 64-bit mask
        return oneOf(random_, kIds);
    }

    static Place moved(int result, const Place& here, const Place& there) {
        EXPECT_EQ(result, there == nullptr ? -1 : 0);
        return there == nullptr ? here : there;
    }

    Place move(const It& it, const Place& here) {
        const int id = someId();
        switch (random_() % 8) {
        case 0:
            return moved(it.seekRoot(), here, root_);
        case 1:
        case 2:
            return moved(it.seekUp(), here, here->parent.lock());
        case 3:
            return moved(it.firstChild(), here, find(here, 0));
        case 4:
            return moved(it.seek(id), here, find(here, id));
        case 5:
            return moved(it.nextSibling(), here, after(here, 0));
        case 6:
            return moved(it.nextSibling(id), here, after(here, id));
        default: {
            const Place found = find(here, id);
            std::string value = "-";
            EXPECT_EQ(it.curID(), here->id);
            EXPECT_EQ(it.seekPresence(id), found == nullptr ? -1 : 0);
            EXPECT_EQ(it.getValue(value, id), found == nullptr ? 1 : found->value ? 0 : -1);
            EXPECT_EQ(value, found == nullptr ? "-" : found->value.value_or("-"));
            return here;
        }
        }
    }

    Place change(It& it, const Place& here, const Place& other, const It& otherCursor) {
        const int id = someId();
        const std::string text(random_() % 40, static_cast<char>('a' + random_() % 26));
        switch (random_() % 10) {
        case 0:
        case 1:
            return moved(it.newChild(id), here, add(here, id));
        case 2: {
            const Place found = find(here, id);
            return moved(it.putChild(id), here, found == nullptr ? add(here, id) : found);
        }
        case 3:
        case 4:
        case 5:
            EXPECT_EQ(it.putValue(text, id), 0);
            add(here, id)->value = text;
            return here;
        case 6:
            EXPECT_EQ(it.putValue(text, 0), 0);
            here->value = text;
            return here;
        case 7:
            EXPECT_EQ(it.deleteChild(id), find(here, id) == nullptr ? -1 : 0);
            eraseAll(*here, id);
            return here;
        case 8:
            return remove(it, here);
        default:
            EXPECT_EQ(it.copyToChild(&otherCursor), other == nullptr ? -1 : 0);
            return other == nullptr ? reload(it) : copy(here, other);
        }
    }

    Place remove(It& it, const Place& here) {
        const Place parent = here->parent.lock();
        EXPECT_EQ(it.deleteFromChild(), parent == nullptr ? -1 : 0);
        if (parent == nullptr) {
            return here;
        }
        std::erase(parent->children, here);
        return parent;
    }

    Place copy(const Place& here, const Place& other) {
        const Place copied = copyOf(other);
        if (other == root_) {
            for (const Place& child : copied->children) {
                adopt(here, child);
            }
        } else {
            adopt(here, copied);
        }
        return here;
    }

    /// The same tree anew, or an empty one; every cursor is stale then.
    Place reload(It& it) {
        HBXMessage& message = *it.getMessage();
        const std::string bytes = bytesOf(it);
        switch (random_() % 4) {
        case 0:
            EXPECT_EQ(message.init(bytes.data(), static_cast<int>(bytes.size())), 0);
            break;
        case 1:
            EXPECT_EQ(message.fromText(takeText(it.toText()).c_str(), nullptr), 0);
            break;
        case 2:
            EXPECT_EQ(message.deserialize(rootOf(parseMessage(bytes)).get(), nullptr), 0);
            break;
        default:
            EXPECT_EQ(message.create(5), 0);
            root_ = std::make_shared<Plain>();
        }
        places_ = {};
        return nullptr;
    }

    Random random_;
    Place root_ = std::make_shared<Plain>();
    std::array<Cursor, 2> cursors_;
    std::array<std::weak_ptr<Plain>, 2> places_;
};

TEST(TreeProperty, RandomEditsThroughTwoCursorsDoAsAPlainTreeDoes) {
    for (std::uint64_t seed = 1; seed <= 40 && !HasFailure(); ++seed) {
        EditRun run(seed);
        for (int i = 0; i < 2000 && !HasFailure(); ++i) {
            SCOPED_TRACE("seed " + std::to_string(seed) + " step " + std::to_string(i));
            run.step();
            if (i % 50 == 0) {
                run.check();
            }
            run.shrinkWhenLarge();
        }
        run.check();
    }
}

} // namespace
} // namespace HBX::test
