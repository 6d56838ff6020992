#include "EnvTree.h"

#include <map>
#include <set>

namespace HBX::tool {

namespace {

using Why = TreeRow::Why;

constexpr std::size_t kDeepest = 32; ///< levels that are shown: a deeper row stands as if it were on this one

/// Neither the depth nor the shape of what a cache holds is to be trusted, so nothing here recurses.
class TreeMaker {
public:
    explicit TreeMaker(const std::vector<EnvRow>& rows) : rows_(rows), isPlaced_(rows.size()) {
        for (std::size_t i = 0; i < rows.size(); ++i) {
            known_[rows[i].eid] = i;
        }
        for (std::size_t i = 0; i < rows.size(); ++i) {
            if (known_.contains(rows[i].parent)) {
                children_[rows[i].parent].push_back(i);
            }
        }
    }

    std::vector<TreeRow> make() {
        for (std::size_t i = 0; i < rows_.size(); ++i) {
            const EnvRow& row = rows_[i];
            if (!known_.contains(row.parent)) {
                place(i, row.parent.isValid() ? Why::Orphan : Why::Place);
            }
        }
        for (std::size_t i = 0; i < rows_.size(); ++i) {
            if (!isPlaced_[i]) {
                place(circleAbove(i), Why::Circle);
            }
        }
        return std::move(tree_);
    }

private:
    struct Pending {
        std::size_t index;
        std::size_t level;
        std::string stem; ///< of the branches of its children
        std::string branch;
    };

    /// A row and everything below it.
    void place(std::size_t top, Why why) {
        std::vector<Pending> pending{{top, 0, "", ""}};
        while (!pending.empty()) {
            const Pending next = std::move(pending.back());
            pending.pop_back();
            isPlaced_[next.index] = true;
            tree_.push_back({rows_[next.index], next.branch, next.index == top ? why : Why::Place});
            pushChildren(next, pending);
        }
    }

    /// In reverse, so that the first one is taken first.
    void pushChildren(const Pending& parent, std::vector<Pending>& pending) {
        const auto found = children_.find(rows_[parent.index].eid);
        if (found == children_.end()) {
            return;
        }
        const bool isShown = parent.level < kDeepest;
        bool isLast = true;
        for (auto child = found->second.rbegin(); child != found->second.rend(); ++child) {
            if (isPlaced_[*child]) {
                continue; // the one that closes a circle
            }
            pending.push_back({*child, parent.level + 1,
                               isShown ? parent.stem + (isLast ? "   " : "│  ") : parent.stem,
                               isShown ? parent.stem + (isLast ? "└─ " : "├─ ") : parent.branch});
            isLast = false;
        }
    }

    /// Up from a row that hangs below a circle, or is in it, until a row comes again.
    std::size_t circleAbove(std::size_t index) const {
        std::set<std::size_t> seen;
        while (seen.insert(index).second) {
            index = known_.at(rows_[index].parent);
        }
        return index;
    }

    const std::vector<EnvRow>& rows_;
    std::vector<bool> isPlaced_;
    std::map<HBXEID, std::size_t> known_;
    std::map<HBXEID, std::vector<std::size_t>> children_;
    std::vector<TreeRow> tree_;
};

} // namespace

std::vector<TreeRow> treeOf(const std::vector<EnvRow>& rows) { return TreeMaker(rows).make(); }

} // namespace HBX::tool
