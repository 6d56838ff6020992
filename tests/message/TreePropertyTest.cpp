#include <array>
#include <optional>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include <HBXCommon/HBXErrorMessage.h>

#include "support/MessageTestUtil.h"

/// Random trees and random edits against a plain model.
namespace HBX::test {
namespace {

using Random = std::mt19937_64;

/// Elements, attributes, namespaces and types are drawn from these: of the table, numbers without a name,
/// names of the message's own, among them such as no text form can write as they are.
const std::array<std::string, 9> kNames = {"own",
                                           "\xC3\xBC n",
                                           "with space",
                                           "hbx:odd",
                                           "xmlish",
                                           "scheduler",
                                           std::string("\x01\xFF/\n", 4),
                                           std::string(1024, 'x'),
                                           "4711"};
constexpr int kNumbers[] = {1026, 1018, 1021, 77, 0x3FFFFFFF};
const std::array<std::string, 13> kTexts = {"",
                                            " \t\n",
                                            "text",
                                            "&lt;<a b=\"c\">]]>",
                                            std::string("\0\xFF\r\n", 4),
                                            "\r\n",
                                            " lead",
                                            "trail \r",
                                            "\xC3\xA4",
                                            "\xED\xA0\x80",
                                            "\xF0\x9F\x98\x80",
                                            "\xEF\xBF\xBF",
                                            "long enough text \xC0\x80]"};

struct Mark {
    int number = 0;
    std::string name;
    friend bool operator==(const Mark&, const Mark&) = default;
};

/// An element as the tests see it.
struct Model {
    Mark id, ns, typeNs, type;
    std::optional<std::string> value;
    bool xml = false;
    std::vector<std::pair<Mark, std::string>> attributes;
    std::vector<Model> children;
};

class Generator {
public:
    explicit Generator(Random& random) : random_(random) {}

    std::size_t pick(std::size_t count) { return static_cast<std::size_t>(random_() % count); }

    Mark mark() {
        return pick(2) == 0 ? Mark{kNumbers[pick(std::size(kNumbers))], ""}
                            : Mark{0, kNames[pick(kNames.size())]};
    }

    Model element(int depth) {
        Model model = content(depth);
        model.id = mark();
        return model;
    }

    Model content(int depth) {
        Model model;
        if (pick(4) == 0) {
            model.ns = mark();
        }
        if (pick(4) == 0) {
            model.typeNs = pick(3) == 0 ? Mark{} : mark();
            model.type = mark();
        }
        if (pick(3) != 0) {
            model.value = kTexts[pick(kTexts.size())];
            model.xml = pick(4) == 0;
        }
        for (std::size_t count = pick(5) == 0 ? pick(4) : 0; count > 0; --count) {
            const Mark id = mark();
            bool fresh = true;
            for (const auto& attribute : model.attributes) {
                fresh = fresh && attribute.first != id;
            }
            if (fresh) {
                model.attributes.emplace_back(id, kTexts[pick(kTexts.size())]);
            }
        }
        for (std::size_t count = depth > 0 ? pick(5) : 0; count > 0; --count) {
            model.children.push_back(element(depth - 1));
        }
        return model;
    }

private:
    Random& random_;
};

int idOf(HBXMessageIterator& it, const Mark& mark) {
    if (mark.name.empty()) {
        return mark.number;
    }
    if (it.idOfName(mark.name) == 0) {
        const Cursor scratch = secondCursor(it);
        scratch->newChild(mark.name);
        scratch->deleteFromChild();
    }
    return it.idOfName(mark.name);
}

void setMarks(HBXMessageIterator& it, const Model& model) {
    model.ns.name.empty() ? it.setNamespace(model.ns.number) : it.setNamespace(model.ns.name);
    if (model.typeNs.name.empty() && model.type.name.empty()) {
        it.setComplexType(model.typeNs.number, model.type.number);
    } else {
        it.setComplexType(model.typeNs.name, model.type.name);
    }
}

/// Builds the model under the cursor; with noise on the way when there is a generator.
void build(HBXMessageIterator& it, const Model& model, Generator* noise) {
    if (noise != nullptr && noise->pick(2) == 0) {
        const Model junk = noise->element(1);
        it.putAttr("junk", idOf(it, junk.id));
        const Cursor scratch = secondCursor(it);
        scratch->newChild(idOf(it, junk.id));
        build(*scratch, junk, nullptr);
        scratch->deleteFromChild();
        it.putValue("soon replaced", 0);
    }
    setMarks(it, model);
    for (const auto& [id, text] : model.attributes) {
        it.putAttr(text, idOf(it, id));
    }
    if (model.value) {
        model.xml ? it.putValueXML(*model.value, 0) : it.putValue(*model.value, 0);
    }
    for (const Model& child : model.children) {
        ASSERT_EQ(it.newChild(idOf(it, child.id)), 0);
        build(it, child, nullptr);
        it.seekUp();
    }
}

std::string show(const HBXMessageIterator& it) {
    std::string dump = it.curName() + '#' + (it.curID() < 0x40000000 ? std::to_string(it.curID()) : "-") +
                       '{' + it.curType() + '|' + std::to_string(std::min(it.curNamespaceID(), 0x40000000));
    std::string_view text;
    bool xml = false;
    if (it.rawValue(0, text, xml) == 0) {
        dump.append(xml ? "|x'" : "|'").append(text).append("'");
    }
    std::string attribute;
    for (const int number : kNumbers) {
        if (it.getAttr(attribute, number) == 0) {
            dump += '@' + std::to_string(number) + '=' + attribute;
        }
    }
    for (const std::string& name : kNames) {
        if (it.getAttr(attribute, it.idOfName(name)) == 0) {
            dump += '@' + name + '=' + attribute;
        }
    }
    if (it.firstChild() == 0) {
        do {
            dump += show(it);
        } while (it.nextSibling() == 0);
        it.seekUp();
    }
    return dump + '}';
}

/// Whole trees, parts and copies out of either cursor.
void expectSameParts(const HBXMessageIterator& a, const HBXMessageIterator& b) {
    for (int more = 0; more == 0; more = a.firstChild() + b.firstChild()) {
        const Cursor fromA = newCursor();
        const Cursor fromB = newCursor();
        EXPECT_EQ(fromA->copyToChild(&a), fromB->copyToChild(&b));
        EXPECT_EQ(bytesOf(*fromA), bytesOf(*fromB));
        EXPECT_EQ(bytesOf(a), bytesOf(b));
        EXPECT_EQ(bytesFromChild(a), bytesFromChild(b));
        EXPECT_EQ(takeText(a.toTextFromChild()), takeText(b.toTextFromChild()));
        EXPECT_EQ(bytesOf(adoptMessage(a.copyMessage())), bytesOf(adoptMessage(b.copyMessage())));
        EXPECT_EQ(secondCursor(a)->curName(), b.curName());
    }
    a.seekRoot();
    b.seekRoot();
}

TEST(TreeProperty, RandomTreesSurviveBothFormsAndDeepCopies) {
    Random random(1);
    for (int round = 0; round < 400; ++round) {
        Generator generator(random);
        const Model model = generator.content(4);
        const Cursor it = newCursor();
        build(*it, model, nullptr);
        const std::string bytes = bytesOf(*it);
        const std::string dump = show(*it);
        const Message fromBytes = parseMessage(bytes);
        ASSERT_NE(fromBytes, nullptr) << round << getErrorMessage();
        EXPECT_EQ(bytesOf(fromBytes), bytes) << round;
        EXPECT_EQ(show(*rootOf(fromBytes)), dump) << round;
        EXPECT_EQ(readInPlace(bytes,
                              [&](const HBXMessageIterator& inPlace) {
                                  EXPECT_EQ(show(inPlace), dump) << round;
                                  expectSameParts(inPlace, *it);
                                  return 0;
                              }),
                  0);
        for (const char* indent : {"", " "}) {
            const Message fromText = newMessage();
            const std::string text = takeText(it->getMessage()->toText(nullptr, indent));
            ASSERT_EQ(fromText->fromText(text.c_str(), nullptr), 0) << getErrorMessage() << '\n' << text;
            EXPECT_EQ(bytesOf(fromText), bytes) << round << '\n' << text;
        }
        EXPECT_EQ(bytesOf(adoptMessage(it->getMessage()->copy(true))), bytes) << round;
        if (it->firstChild() == 0) {
            const Cursor copy = newCursor();
            copy->copyToChild(it.get());
            const Cursor element = newCursor();
            EXPECT_EQ(element->fromTextToChild(takeText(it->toTextFromChild()).c_str()), 0);
            EXPECT_EQ(bytesOf(*element), bytesOf(*copy)) << round;
            it->seekRoot();
        }
        const Cursor elsewhere = newCursor();
        elsewhere->newChild(kNames[1]);
        elsewhere->copyToChild(it.get());
        const Cursor direct = newCursor();
        direct->newChild(kNames[1]);
        deserializeToChild(*direct, bytes);
        EXPECT_EQ(bytesOf(*elsewhere), bytesOf(*direct)) << round;
    }
}

TEST(TreeProperty, EqualTreesHaveEqualBytesWhateverTheirHistory) {
    Random random(2);
    for (int round = 0; round < 300; ++round) {
        Generator generator(random);
        Model model = generator.content(3);
        model.value = "root"; // the noise leaves a value
        const Cursor plain = newCursor();
        build(*plain, model, nullptr);
        const Cursor noisy = newCursor();
        for (const std::string& name : {kNames[4], kNames[2], kNames[0]}) {
            noisy->newChild(name);
            noisy->setNamespace("space " + name);
            noisy->deleteFromChild();
        }
        noisy->newChild(5);
        build(*noisy, generator.content(2), &generator);
        noisy->deleteFromChild();
        noisy->putValue("soon replaced", 0);
        noisy->setNamespace("gone");
        noisy->setComplexType("gone", "too");
        build(*noisy, model, nullptr);
        EXPECT_EQ(bytesOf(*noisy), bytesOf(*plain)) << round;
        EXPECT_EQ(takeText(noisy->toText()), takeText(plain->toText())) << round;
    }
}

// --- random edits ---

struct Plain {
    int id = 0;
    std::optional<std::string> value;
    Plain* parent = nullptr;
    std::vector<std::unique_ptr<Plain>> children;

    Plain* find(int wanted, std::size_t from = 0) {
        for (std::size_t i = from; i < children.size(); ++i) {
            if (wanted == 0 || children[i]->id == wanted) {
                return children[i].get();
            }
        }
        return nullptr;
    }
    [[nodiscard]] std::size_t index() const {
        std::size_t i = 0;
        while (parent->children[i].get() != this) {
            ++i;
        }
        return i;
    }
    Plain* add(int childId) {
        children.push_back(std::make_unique<Plain>());
        children.back()->id = childId;
        children.back()->parent = this;
        return children.back().get();
    }
    void copyFrom(const Plain& source) {
        value = source.value;
        for (const auto& child : source.children) {
            add(child->id)->copyFrom(*child);
        }
    }
    [[nodiscard]] bool holds(const Plain* other) const {
        while (other != nullptr && other != this) {
            other = other->parent;
        }
        return other == this;
    }
    [[nodiscard]] std::string show() const {
        std::string dump = std::to_string(id) + '=' + value.value_or("-") + '(';
        for (const auto& child : children) {
            dump += child->show();
        }
        return dump + ')';
    }
};

std::string showPlain(const HBXMessageIterator& it) {
    std::string value = "-";
    it.getValue(value, 0);
    std::string dump = std::to_string(it.curID()) + '=' + value + '(';
    if (it.firstChild() == 0) {
        do {
            dump += showPlain(it);
        } while (it.nextSibling() == 0);
        it.seekUp();
    }
    return dump + ')';
}

/// Two cursors on a tree, and the same two on the model; null = stale.
class EditRun {
public:
    explicit EditRun(std::uint64_t seed) : random_(seed), cursors_{newCursor(), nullptr} {
        cursors_[1] = secondCursor(*cursors_[0]);
        places_ = {&root_, &root_};
    }

    void step() {
        const std::size_t which = pick(2);
        HBXMessageIterator& it = *cursors_[which];
        Plain*& place = places_[which];
        const int id = static_cast<int>(pick(4)) + 1;
        const std::size_t operation = pick(20);
        SCOPED_TRACE("operation " + std::to_string(operation) + " id " + std::to_string(id));
        switch (operation) {
        case 0:
            return move(place, it.seekRoot(), &root_);
        case 1:
        case 2:
            return move(place, it.seekUp(), place == nullptr ? nullptr : place->parent);
        case 3:
            return move(place, it.firstChild(), place == nullptr ? nullptr : place->find(0));
        case 4:
            return move(place, it.seek(id), place == nullptr ? nullptr : place->find(id));
        case 5:
            return move(place, it.nextSibling(), nextOf(place, 0));
        case 6:
            return move(place, it.nextSibling(id), nextOf(place, id));
        case 7:
        case 8:
            return move(place, it.newChild(id), place == nullptr ? nullptr : place->add(id));
        case 9: {
            Plain* found = place == nullptr ? nullptr : place->find(id);
            return move(place, it.putChild(id),
                        place == nullptr || found != nullptr ? found : place->add(id));
        }
        case 10:
        case 11:
        case 12:
            return put(place, it.putValue(text(), id), id);
        case 13:
            return put(place, it.putValue(text(), 0), 0);
        case 14:
            return erase(place, it.deleteChild(id), id);
        case 15: {
            Plain* gone = place == &root_ ? nullptr : place;
            EXPECT_EQ(it.deleteFromChild(), gone == nullptr ? -1 : 0);
            if (gone != nullptr) {
                place = gone->parent;
                remove(gone);
            }
            return;
        }
        case 16:
            return copy(place, it.copyToChild(cursors_[1 - which].get()), places_[1 - which]);
        case 17:
            return reload();
        default: {
            std::string value = "-";
            EXPECT_EQ(it.getValue(value, 0), place != nullptr && place->value ? 0 : -1);
            EXPECT_EQ(it.curID(), place == nullptr ? 0 : place->id);
            EXPECT_EQ(value, place != nullptr && place->value ? *place->value : "-");
        }
        }
    }

    void check() {
        const Cursor root = secondCursor(*cursors_[0], false);
        EXPECT_EQ(showPlain(*root), root_.show());
        EXPECT_NE(parseMessage(bytesOf(*root)), nullptr);
    }

    std::size_t size() { return root_.show().size(); }

    void shrink() {
        const Cursor root = secondCursor(*cursors_[0], false);
        for (int id = 1; id <= 4; ++id) {
            root->deleteChild(id);
        }
        places_ = {places_[0] == &root_ ? &root_ : nullptr, places_[1] == &root_ ? &root_ : nullptr};
        root_.children.clear();
    }

private:
    std::size_t pick(std::size_t count) { return static_cast<std::size_t>(random_() % count); }
    std::string text() {
        text_ = std::string(pick(40), static_cast<char>('a' + pick(26)));
        return text_;
    }

    static Plain* nextOf(Plain* place, int id) {
        return place == nullptr || place->parent == nullptr ? nullptr
                                                            : place->parent->find(id, place->index() + 1);
    }

    static void move(Plain*& place, int result, Plain* expected) {
        EXPECT_EQ(result, expected == nullptr ? -1 : 0);
        place = expected == nullptr ? place : expected;
    }

    void put(Plain* place, int result, int id) {
        EXPECT_EQ(result, place == nullptr ? -1 : 0);
        if (place != nullptr) {
            (id == 0 ? place : place->add(id))->value = text_;
        }
    }

    void remove(Plain* gone) {
        for (Plain*& other : places_) {
            other = gone->holds(other) ? nullptr : other;
        }
        gone->parent->children.erase(gone->parent->children.begin() +
                                     static_cast<std::ptrdiff_t>(gone->index()));
    }

    void erase(Plain* place, int result, int id) {
        EXPECT_EQ(result, place != nullptr && place->find(id) != nullptr ? 0 : -1);
        while (place != nullptr && place->find(id) != nullptr) {
            remove(place->find(id));
        }
    }

    void copy(Plain* place, int result, Plain* source) {
        EXPECT_EQ(result, place != nullptr && source != nullptr ? 0 : -1);
        if (result == 0) {
            Plain snapshot;
            snapshot.copyFrom(*source);
            snapshot.id = source->id;
            if (source != &root_) {
                place->add(snapshot.id)->copyFrom(snapshot);
                return;
            }
            for (const auto& child : snapshot.children) {
                place->add(child->id)->copyFrom(*child);
            }
        }
    }

    void reload() {
        const std::string bytes = bytesOf(*cursors_[0]);
        EXPECT_EQ(cursors_[0]->getMessage()->init(bytes.data(), static_cast<int>(bytes.size())), 0);
        places_ = {nullptr, nullptr};
    }

    Random random_;
    Plain root_;
    std::array<Cursor, 2> cursors_;
    std::array<Plain*, 2> places_{};
    std::string text_;
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
            if (run.size() > 3000) {
                run.shrink();
            }
        }
        run.check();
    }
}

} // namespace
} // namespace HBX::test
