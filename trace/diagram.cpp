#include "trace/diagram.h"

#include <algorithm>

namespace npxlate::trace {
namespace {

constexpr std::uint32_t beyond_all_levels = 0xffffffff;

}  // namespace

Diagrams::Diagrams() : nodes_{{beyond_all_levels, never, never}, {beyond_all_levels, always, always}} {}

Node Diagrams::bit(BitId id) {
    const auto [place, is_new] = levels_.try_emplace(id, static_cast<std::uint32_t>(ids_.size()));
    if (is_new) {
        ids_.push_back(id);
    }
    return fork(place->second, never, always);
}

Node Diagrams::fork(std::uint32_t level, Node if_clear, Node if_set) {
    if (if_clear == if_set) {
        return if_clear;
    }
    const auto [place, is_new] = unique_.try_emplace({level, if_clear, if_set}, static_cast<Node>(nodes_.size()));
    if (is_new) {
        nodes_.push_back({level, if_clear, if_set});
    }
    return place->second;
}

Node Diagrams::if_then_else(Node condition, Node if_true, Node if_false) {
    if (condition == always || if_true == if_false) {
        return if_true;
    }
    if (condition == never) {
        return if_false;
    }
    if (if_true == always && if_false == never) {
        return condition;
    }
    const Key key{condition, if_true, if_false};
    if (const auto known = computed_.find(key); known != computed_.end()) {
        return known->second;
    }
    const std::uint32_t top = std::min({level(condition), level(if_true), level(if_false)});
    const auto side = [&](Node node, bool set) {
        return level(node) != top ? node : set ? nodes_[node].if_set : nodes_[node].if_clear;
    };
    const Node if_clear = if_then_else(side(condition, false), side(if_true, false), side(if_false, false));
    const Node if_set = if_then_else(side(condition, true), side(if_true, true), side(if_false, true));
    const Node result = fork(top, if_clear, if_set);
    computed_.emplace(key, result);
    return result;
}

Node Diagrams::where(Node a, BitId id, bool value) {
    return where(a, [&](BitId other) { return other == id ? std::optional{value} : std::nullopt; });
}

Node Diagrams::where(Node a, const std::function<std::optional<bool>(BitId)>& known) {
    std::unordered_map<Node, Node> done;
    const std::function<Node(Node)> visit = [&](Node node) -> Node {
        if (node <= always) {
            return node;
        }
        if (const auto found = done.find(node); found != done.end()) {
            return found->second;
        }
        const Fork here = nodes_[node];
        Node result = never;
        if (const std::optional<bool> value = known(ids_[here.level])) {
            result = visit(*value ? here.if_set : here.if_clear);
        } else {
            const Node if_clear = visit(here.if_clear);
            result = fork(here.level, if_clear, visit(here.if_set));
        }
        done.emplace(node, result);
        return result;
    };
    return visit(a);
}

Node Diagrams::for_some(Node a, const std::function<bool(BitId)>& bits) {
    std::unordered_map<Node, Node> done;
    const std::function<Node(Node)> visit = [&](Node node) -> Node {
        if (node <= always) {
            return node;
        }
        if (const auto found = done.find(node); found != done.end()) {
            return found->second;
        }
        const Fork here = nodes_[node];
        const Node if_clear = visit(here.if_clear);
        const Node if_set = visit(here.if_set);
        const Node result = bits(ids_[here.level]) ? either(if_clear, if_set) : fork(here.level, if_clear, if_set);
        done.emplace(node, result);
        return result;
    };
    return visit(a);
}

std::vector<BitId> Diagrams::depends_on(Node a) const {
    std::vector<bool> seen(nodes_.size());
    std::vector<Node> open{a};
    std::vector<std::uint32_t> levels;
    while (!open.empty()) {
        const Node node = open.back();
        open.pop_back();
        if (node <= always || seen[node]) {
            continue;
        }
        seen[node] = true;
        levels.push_back(level(node));
        open.push_back(nodes_[node].if_clear);
        open.push_back(nodes_[node].if_set);
    }
    std::ranges::sort(levels);
    levels.erase(std::unique(levels.begin(), levels.end()), levels.end());
    std::vector<BitId> result;
    result.reserve(levels.size());
    for (const std::uint32_t level : levels) {
        result.push_back(ids_[level]);
    }
    return result;
}

std::vector<std::pair<BitId, bool>> Diagrams::one_way(Node a) const {
    std::vector<std::pair<BitId, bool>> result;
    while (a > always) {
        const bool set = nodes_[a].if_clear == never;
        result.emplace_back(asks(a), set);
        a = set ? nodes_[a].if_set : nodes_[a].if_clear;
    }
    return result;
}

}  // namespace npxlate::trace
