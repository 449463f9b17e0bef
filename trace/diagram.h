// Functions of the bits of records, as binary decision diagrams: a function is a node that asks for one bit and goes on
// to one of two nodes. Two functions are equal exactly if they are the same node, so that whether a condition can hold,
// or follows from another, needs no search.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include "trace/node.h"

namespace npxlate::trace {

class Diagrams {
public:
    Diagrams();

    // Bits are asked for in the order in which they are first used here.
    Node bit(BitId id);
    Node if_then_else(Node condition, Node if_true, Node if_false);
    Node negation(Node a) { return if_then_else(a, never, always); }
    Node both(Node a, Node b) { return if_then_else(a, b, never); }
    Node either(Node a, Node b) { return if_then_else(a, always, b); }
    Node differ(Node a, Node b) { return if_then_else(a, negation(b), b); }
    bool implies(Node a, Node b) { return both(a, negation(b)) == never; }

    // The function where this bit has this value.
    Node where(Node a, BitId id, bool value);
    // The function where all bits that `known` knows have these values.
    Node where(Node a, const std::function<std::optional<bool>(BitId)>& known);
    // Whether these bits can be chosen so that the function holds; what is left is a function of the other bits.
    Node for_some(Node a, const std::function<bool(BitId)>& bits);

    // What a node asks for, and where it goes on. Not of `never` and `always`.
    BitId asks(Node node) const { return ids_[nodes_[node].level]; }
    Node if_clear(Node node) const { return nodes_[node].if_clear; }
    Node if_set(Node node) const { return nodes_[node].if_set; }

    // How many functions there are by now: none is ever forgotten.
    std::size_t size() const { return nodes_.size(); }

    // All bits on which the function depends, in the order in which they are asked for.
    std::vector<BitId> depends_on(Node a) const;

    template <typename BitOf>
    bool holds(Node a, BitOf&& bit_of) const {
        while (a > always) {
            a = bit_of(ids_[nodes_[a].level]) ? nodes_[a].if_set : nodes_[a].if_clear;
        }
        return a == always;
    }

    // Some way to make the function true: the bits it asks for, and their values. The function must not be `never`.
    std::vector<std::pair<BitId, bool>> one_way(Node a) const;

private:
    struct Fork {
        std::uint32_t level;
        Node if_clear;
        Node if_set;
    };
    struct Key {
        std::uint32_t a, b, c;
        bool operator==(const Key&) const = default;
    };
    struct Hash {
        std::size_t operator()(const Key& key) const {
            std::uint64_t h = (std::uint64_t{key.a} << 32 | key.b) * 0x9e3779b97f4a7c15U;
            h = (h ^ (h >> 29) ^ key.c) * 0xbf58476d1ce4e5b9U;
            return h ^ (h >> 32);
        }
    };

    std::uint32_t level(Node node) const { return nodes_[node].level; }
    Node fork(std::uint32_t level, Node if_clear, Node if_set);

    std::vector<Fork> nodes_{};
    std::vector<BitId> ids_{};  // by level
    std::unordered_map<BitId, std::uint32_t> levels_{};
    std::unordered_map<Key, Node, Hash> unique_{};
    std::unordered_map<Key, Node, Hash> computed_{};
};

}  // namespace npxlate::trace
