// The ordered map that local adjustment records hand to the render agent: a
// map from 32-bit signed key to a value pointer, laid out as the agent's
// standard library lays out its ordered map, because the agent walks it
// directly. The map itself is a pointer to the head node and the element
// count; the tree is red-black, of 48-byte nodes.
//
// The head node is the sentinel of the tree: every missing child points to
// it, its parent is the root, its left the smallest node and its right the
// largest. In an empty map it is its own left, parent and right. Its colour
// is black and its head mark 1; every other node has head mark 0.
//
// Nodes come from the effect heap (AllocEffectMemory), because the agent
// frees what the module builds. The map has no constructor: zero-filled
// memory is a map not yet made (no head node), which reads as empty and
// frees as nothing. Init gives it its head node.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "engine/effect_record.h"

namespace pcg {
namespace engine {

// Colours as the agent's library marks them.
enum : char {
    kMapRed = 0,
    kMapBlack = 1,
};

// The element a node holds: the key padded to eight bytes, then the value.
template <typename TValue>
struct OrderedMapPair {
    int32_t nKey;
    TValue* pValue;
};

template <typename TValue>
struct OrderedMapNode {
    OrderedMapNode* m_pLeft;
    OrderedMapNode* m_pParent;
    OrderedMapNode* m_pRight;
    char m_nColor;
    char m_bIsHead;
    OrderedMapPair<TValue> m_pair;
};

static_assert(sizeof(OrderedMapPair<void>) == 16, "key padded to eight bytes, then the value");
static_assert(offsetof(OrderedMapPair<void>, pValue) == 8, "value after the padded key");
static_assert(sizeof(OrderedMapNode<void>) == 48, "map node");
static_assert(offsetof(OrderedMapNode<void>, m_pLeft) == 0, "left");
static_assert(offsetof(OrderedMapNode<void>, m_pParent) == 8, "parent");
static_assert(offsetof(OrderedMapNode<void>, m_pRight) == 16, "right");
static_assert(offsetof(OrderedMapNode<void>, m_nColor) == 24, "colour");
static_assert(offsetof(OrderedMapNode<void>, m_bIsHead) == 25, "head mark");
static_assert(offsetof(OrderedMapNode<void>, m_pair) == 32, "key");
static_assert(offsetof(OrderedMapNode<void>, m_pair) + offsetof(OrderedMapPair<void>, pValue) == 40, "value");
static_assert(std::is_standard_layout<OrderedMapNode<void>>::value, "binary contract");

template <typename TValue>
struct OrderedMap {
    using Node = OrderedMapNode<TValue>;

    Node* m_pHead;
    uint64_t m_nSize;

    // Gives a map not yet made its head node. False, with the map unchanged,
    // when the heap refuses; true at once when it already has one.
    bool Init() {
        if (m_pHead != nullptr) {
            return true;
        }
        Node* head = static_cast<Node*>(AllocEffectMemory(sizeof(Node)));
        if (head == nullptr) {
            return false;
        }
        head->m_pLeft = head->m_pParent = head->m_pRight = head;
        head->m_nColor = kMapBlack;
        head->m_bIsHead = 1;
        m_pHead = head;
        m_nSize = 0;
        return true;
    }

    std::size_t size() const { return m_pHead ? static_cast<std::size_t>(m_nSize) : 0; }
    bool empty() const { return size() == 0; }

    // The node of `key`, or null.
    Node* Find(int32_t key) const {
        if (m_pHead == nullptr) {
            return nullptr;
        }
        Node* node = m_pHead->m_pParent;
        while (!node->m_bIsHead) {
            if (key < node->m_pair.nKey) {
                node = node->m_pLeft;
            } else if (node->m_pair.nKey < key) {
                node = node->m_pRight;
            } else {
                return node;
            }
        }
        return nullptr;
    }

    // The node of `key`, inserted with a null value when absent. Null, with
    // the map unchanged, when the map has no head or the heap refuses.
    Node* FindOrInsert(int32_t key, bool* inserted = nullptr) {
        if (inserted) {
            *inserted = false;
        }
        if (m_pHead == nullptr) {
            return nullptr;
        }
        Node* parent = m_pHead;
        Node* node = m_pHead->m_pParent;
        bool left = true;
        while (!node->m_bIsHead) {
            parent = node;
            if (key < node->m_pair.nKey) {
                left = true;
                node = node->m_pLeft;
            } else if (node->m_pair.nKey < key) {
                left = false;
                node = node->m_pRight;
            } else {
                return node;
            }
        }
        Node* fresh = static_cast<Node*>(AllocEffectMemory(sizeof(Node)));
        if (fresh == nullptr) {
            return nullptr;
        }
        fresh->m_pLeft = fresh->m_pRight = m_pHead;
        fresh->m_pParent = parent;
        fresh->m_nColor = kMapRed;
        fresh->m_bIsHead = 0;
        fresh->m_pair.nKey = key;
        fresh->m_pair.pValue = nullptr;
        m_fnLink(parent, fresh, left);
        ++m_nSize;
        if (inserted) {
            *inserted = true;
        }
        return fresh;
    }

    // In-order walk, smallest key first: First() up to the head.
    Node* First() const { return m_pHead ? m_pHead->m_pLeft : nullptr; }
    Node* End() const { return m_pHead; }

    static Node* Next(Node* node) {
        if (!node->m_pRight->m_bIsHead) {
            node = node->m_pRight;
            while (!node->m_pLeft->m_bIsHead) {
                node = node->m_pLeft;
            }
            return node;
        }
        Node* parent = node->m_pParent;
        while (!parent->m_bIsHead && node == parent->m_pRight) {
            node = parent;
            parent = parent->m_pParent;
        }
        return parent;
    }

    // Calls visit(key, value) for each element in key order.
    template <typename TVisit>
    void ForEach(TVisit visit) const {
        if (m_pHead == nullptr) {
            return;
        }
        for (Node* node = First(); node != End(); node = Next(node)) {
            visit(node->m_pair.nKey, node->m_pair.pValue);
        }
    }

    // Frees every node and the head; freeValue(value) runs on each value
    // first. The map is not made afterwards. Returns the number of elements.
    template <typename TFreeValue>
    std::size_t Free(TFreeValue freeValue) {
        if (m_pHead == nullptr) {
            return 0;
        }
        const std::size_t count = m_fnFreeTree(m_pHead->m_pParent, freeValue);
        FreeEffectMemory(m_pHead);
        m_pHead = nullptr;
        m_nSize = 0;
        return count;
    }

private:
    template <typename TFreeValue>
    static std::size_t m_fnFreeTree(Node* node, TFreeValue& freeValue) {
        // Recursion on the right only, a loop down the left: the depth is
        // bounded by the tree's height, which balancing keeps logarithmic.
        std::size_t count = 0;
        while (!node->m_bIsHead) {
            count += m_fnFreeTree(node->m_pRight, freeValue);
            Node* left = node->m_pLeft;
            freeValue(node->m_pair.pValue);
            FreeEffectMemory(node);
            ++count;
            node = left;
        }
        return count;
    }

    Node*& m_fnRoot() { return m_pHead->m_pParent; }

    void m_fnLink(Node* parent, Node* fresh, bool left) {
        if (parent == m_pHead) {
            m_pHead->m_pParent = m_pHead->m_pLeft = m_pHead->m_pRight = fresh;
        } else if (left) {
            parent->m_pLeft = fresh;
            if (parent == m_pHead->m_pLeft) {
                m_pHead->m_pLeft = fresh;
            }
        } else {
            parent->m_pRight = fresh;
            if (parent == m_pHead->m_pRight) {
                m_pHead->m_pRight = fresh;
            }
        }
        m_fnRebalance(fresh);
    }

    void m_fnRebalance(Node* node) {
        while (node->m_pParent->m_nColor == kMapRed) {
            Node* parent = node->m_pParent;
            Node* grand = parent->m_pParent;
            if (parent == grand->m_pLeft) {
                Node* uncle = grand->m_pRight;
                if (uncle->m_nColor == kMapRed) {
                    parent->m_nColor = uncle->m_nColor = kMapBlack;
                    grand->m_nColor = kMapRed;
                    node = grand;
                    continue;
                }
                if (node == parent->m_pRight) {
                    node = parent;
                    m_fnRotateLeft(node);
                }
                node->m_pParent->m_nColor = kMapBlack;
                node->m_pParent->m_pParent->m_nColor = kMapRed;
                m_fnRotateRight(node->m_pParent->m_pParent);
            } else {
                Node* uncle = grand->m_pLeft;
                if (uncle->m_nColor == kMapRed) {
                    parent->m_nColor = uncle->m_nColor = kMapBlack;
                    grand->m_nColor = kMapRed;
                    node = grand;
                    continue;
                }
                if (node == parent->m_pLeft) {
                    node = parent;
                    m_fnRotateRight(node);
                }
                node->m_pParent->m_nColor = kMapBlack;
                node->m_pParent->m_pParent->m_nColor = kMapRed;
                m_fnRotateLeft(node->m_pParent->m_pParent);
            }
        }
        m_fnRoot()->m_nColor = kMapBlack;
    }

    // Replaces `where` by its child `pivot` in where's parent (or as root).
    void m_fnReplaceInParent(Node* where, Node* pivot) {
        pivot->m_pParent = where->m_pParent;
        if (where == m_fnRoot()) {
            m_fnRoot() = pivot;
        } else if (where == where->m_pParent->m_pLeft) {
            where->m_pParent->m_pLeft = pivot;
        } else {
            where->m_pParent->m_pRight = pivot;
        }
        where->m_pParent = pivot;
    }

    void m_fnRotateLeft(Node* where) {
        Node* pivot = where->m_pRight;
        where->m_pRight = pivot->m_pLeft;
        if (!pivot->m_pLeft->m_bIsHead) {
            pivot->m_pLeft->m_pParent = where;
        }
        m_fnReplaceInParent(where, pivot);
        pivot->m_pLeft = where;
    }

    void m_fnRotateRight(Node* where) {
        Node* pivot = where->m_pLeft;
        where->m_pLeft = pivot->m_pRight;
        if (!pivot->m_pRight->m_bIsHead) {
            pivot->m_pRight->m_pParent = where;
        }
        m_fnReplaceInParent(where, pivot);
        pivot->m_pRight = where;
    }
};

static_assert(sizeof(OrderedMap<void>) == 16, "head pointer, then element count");
static_assert(offsetof(OrderedMap<void>, m_pHead) == 0, "head node");
static_assert(offsetof(OrderedMap<void>, m_nSize) == 8, "element count");
static_assert(std::is_standard_layout<OrderedMap<void>>::value, "binary contract");
static_assert(std::is_trivially_copyable<OrderedMap<void>>::value, "zero-filled memory is a map not yet made");

}  // namespace engine
}  // namespace pcg
