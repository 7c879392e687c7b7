#include "engine/ordered_map.h"

#include <algorithm>
#include <cstring>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace pcg::engine;

using Map = OrderedMap<int>;
using Node = Map::Node;

// A map that starts as zero-filled memory, as it does inside a record.
struct MapHolder {
    Map map;
    MapHolder() { std::memset(&map, 0, sizeof(map)); }
    ~MapHolder() {
        map.Free([](int*) {});
    }
};

std::vector<int32_t> Keys(const Map& map) {
    std::vector<int32_t> keys;
    map.ForEach([&](int32_t key, int*) { keys.push_back(key); });
    return keys;
}

// Checks the red-black rules and the links below `node`; returns the black
// height, or -1 after a failed expectation.
int CheckSubtree(const Node* head, const Node* node, const Node* parent) {
    if (node == head) {
        return 1;
    }
    EXPECT_EQ(node->m_bIsHead, 0);
    EXPECT_EQ(node->m_pParent, parent);
    if (node->m_nColor == kMapRed) {
        EXPECT_EQ(node->m_pLeft->m_nColor, kMapBlack) << "red node " << node->m_pair.nKey << " has a red child";
        EXPECT_EQ(node->m_pRight->m_nColor, kMapBlack) << "red node " << node->m_pair.nKey << " has a red child";
    } else {
        EXPECT_EQ(node->m_nColor, kMapBlack);
    }
    if (node->m_pLeft != head) {
        EXPECT_LT(node->m_pLeft->m_pair.nKey, node->m_pair.nKey);
    }
    if (node->m_pRight != head) {
        EXPECT_GT(node->m_pRight->m_pair.nKey, node->m_pair.nKey);
    }
    const int left = CheckSubtree(head, node->m_pLeft, node);
    const int right = CheckSubtree(head, node->m_pRight, node);
    EXPECT_EQ(left, right) << "black heights differ below " << node->m_pair.nKey;
    return left + (node->m_nColor == kMapBlack ? 1 : 0);
}

int Height(const Node* head, const Node* node) {
    return node == head ? 0 : 1 + std::max(Height(head, node->m_pLeft), Height(head, node->m_pRight));
}

void CheckTree(const Map& map, const std::vector<int32_t>& sortedKeys) {
    const Node* head = map.m_pHead;
    ASSERT_NE(head, nullptr);
    EXPECT_EQ(head->m_bIsHead, 1);
    EXPECT_EQ(head->m_nColor, kMapBlack);
    EXPECT_EQ(map.m_nSize, sortedKeys.size());
    EXPECT_EQ(Keys(map), sortedKeys);
    if (sortedKeys.empty()) {
        EXPECT_EQ(head->m_pParent, head);
        EXPECT_EQ(head->m_pLeft, head);
        EXPECT_EQ(head->m_pRight, head);
        return;
    }
    const Node* root = head->m_pParent;
    EXPECT_EQ(root->m_nColor, kMapBlack);
    EXPECT_EQ(head->m_pLeft->m_pair.nKey, sortedKeys.front());
    EXPECT_EQ(head->m_pRight->m_pair.nKey, sortedKeys.back());
    CheckSubtree(head, root, head);
}

TEST(OrderedMap, NodeAndMapHaveTheAgentsLayout) {
    EXPECT_EQ(sizeof(Node), 48u);
    EXPECT_EQ(offsetof(Node, m_pLeft), 0u);
    EXPECT_EQ(offsetof(Node, m_pParent), 8u);
    EXPECT_EQ(offsetof(Node, m_pRight), 16u);
    EXPECT_EQ(offsetof(Node, m_nColor), 24u);
    EXPECT_EQ(offsetof(Node, m_bIsHead), 25u);
    EXPECT_EQ(offsetof(Node, m_pair) + offsetof(OrderedMapPair<int>, nKey), 32u);
    EXPECT_EQ(offsetof(Node, m_pair) + offsetof(OrderedMapPair<int>, pValue), 40u);
    EXPECT_EQ(sizeof(Map), 16u);
}

TEST(OrderedMap, ZeroFilledMapIsEmptyAndFreesNothing) {
    MapHolder holder;
    EXPECT_EQ(holder.map.size(), 0u);
    EXPECT_TRUE(Keys(holder.map).empty());
    EXPECT_EQ(holder.map.Find(1), nullptr);
    EXPECT_EQ(holder.map.FindOrInsert(1), nullptr);
    EXPECT_EQ(holder.map.Free([](int*) { ADD_FAILURE(); }), 0u);
}

TEST(OrderedMap, EmptyMapHeadIsItsOwnLeftParentAndRightWithBothBytesOne) {
    MapHolder holder;
    ASSERT_TRUE(holder.map.Init());
    const Node* head = holder.map.m_pHead;
    EXPECT_EQ(head->m_pLeft, head);
    EXPECT_EQ(head->m_pParent, head);
    EXPECT_EQ(head->m_pRight, head);
    EXPECT_EQ(head->m_nColor, 1);
    EXPECT_EQ(head->m_bIsHead, 1);
    EXPECT_EQ(holder.map.m_nSize, 0u);
    EXPECT_EQ(holder.map.First(), holder.map.End());
}

TEST(OrderedMap, InitTwiceKeepsTheHead) {
    MapHolder holder;
    ASSERT_TRUE(holder.map.Init());
    Node* head = holder.map.m_pHead;
    ASSERT_TRUE(holder.map.FindOrInsert(4));
    ASSERT_TRUE(holder.map.Init());
    EXPECT_EQ(holder.map.m_pHead, head);
    EXPECT_EQ(holder.map.size(), 1u);
}

TEST(OrderedMap, SingleNodeIsRootSmallestAndLargest) {
    MapHolder holder;
    ASSERT_TRUE(holder.map.Init());
    bool inserted = false;
    Node* node = holder.map.FindOrInsert(-7, &inserted);
    ASSERT_NE(node, nullptr);
    EXPECT_TRUE(inserted);
    const Node* head = holder.map.m_pHead;
    EXPECT_EQ(head->m_pParent, node);
    EXPECT_EQ(head->m_pLeft, node);
    EXPECT_EQ(head->m_pRight, node);
    EXPECT_EQ(node->m_pParent, head);
    EXPECT_EQ(node->m_pLeft, head);
    EXPECT_EQ(node->m_pRight, head);
    EXPECT_EQ(node->m_nColor, kMapBlack);
    EXPECT_EQ(node->m_bIsHead, 0);
    EXPECT_EQ(node->m_pair.nKey, -7);
    EXPECT_EQ(node->m_pair.pValue, nullptr);
}

TEST(OrderedMap, ExistingKeyIsFoundNotInsertedAgain) {
    MapHolder holder;
    ASSERT_TRUE(holder.map.Init());
    int value = 5;
    Node* first = holder.map.FindOrInsert(3);
    first->m_pair.pValue = &value;
    bool inserted = true;
    Node* again = holder.map.FindOrInsert(3, &inserted);
    EXPECT_EQ(again, first);
    EXPECT_FALSE(inserted);
    EXPECT_EQ(again->m_pair.pValue, &value);
    EXPECT_EQ(holder.map.size(), 1u);
    EXPECT_EQ(holder.map.Find(3), first);
    EXPECT_EQ(holder.map.Find(4), nullptr);
}

TEST(OrderedMap, KeysCompareSigned) {
    MapHolder holder;
    ASSERT_TRUE(holder.map.Init());
    for (int32_t key : {5, -1, 0, INT32_MIN, INT32_MAX, -100}) {
        ASSERT_NE(holder.map.FindOrInsert(key), nullptr);
    }
    CheckTree(holder.map, {INT32_MIN, -100, -1, 0, 5, INT32_MAX});
}

TEST(OrderedMap, AscendingInsertionStaysBalanced) {
    MapHolder holder;
    ASSERT_TRUE(holder.map.Init());
    std::vector<int32_t> keys;
    for (int32_t key = 0; key < 1023; ++key) {
        ASSERT_NE(holder.map.FindOrInsert(key), nullptr);
        keys.push_back(key);
    }
    CheckTree(holder.map, keys);
    // A red-black tree of n nodes is at most 2 log2(n + 1) high; a list would be 1023.
    EXPECT_LE(Height(holder.map.m_pHead, holder.map.m_pHead->m_pParent), 20);
}

TEST(OrderedMap, DescendingInsertionStaysBalanced) {
    MapHolder holder;
    ASSERT_TRUE(holder.map.Init());
    std::vector<int32_t> keys;
    for (int32_t key = 1022; key >= 0; --key) {
        ASSERT_NE(holder.map.FindOrInsert(key), nullptr);
        keys.insert(keys.begin(), key);
    }
    CheckTree(holder.map, keys);
    EXPECT_LE(Height(holder.map.m_pHead, holder.map.m_pHead->m_pParent), 20);
}

TEST(OrderedMap, ShuffledInsertionWithRepeatsKeepsEveryRule) {
    MapHolder holder;
    ASSERT_TRUE(holder.map.Init());
    std::mt19937 random(20261122);
    std::uniform_int_distribution<int32_t> pick(-500, 500);
    std::vector<int32_t> keys;
    for (int step = 0; step < 3000; ++step) {
        const int32_t key = pick(random);
        bool inserted = false;
        ASSERT_NE(holder.map.FindOrInsert(key, &inserted), nullptr);
        const bool known = std::find(keys.begin(), keys.end(), key) != keys.end();
        EXPECT_EQ(inserted, !known);
        if (!known) {
            keys.push_back(key);
        }
    }
    std::sort(keys.begin(), keys.end());
    CheckTree(holder.map, keys);
}

TEST(OrderedMap, NextWalksInKeyOrderAndEndsAtTheHead) {
    MapHolder holder;
    ASSERT_TRUE(holder.map.Init());
    for (int32_t key : {40, 10, 30, 20, 50}) {
        holder.map.FindOrInsert(key);
    }
    std::vector<int32_t> walked;
    Node* node = holder.map.First();
    for (; node != holder.map.End(); node = Map::Next(node)) {
        walked.push_back(node->m_pair.nKey);
    }
    EXPECT_EQ(walked, (std::vector<int32_t>{10, 20, 30, 40, 50}));
    EXPECT_EQ(node, holder.map.m_pHead);
}

TEST(OrderedMap, FreeRunsOnEveryValueAndGivesTheCount) {
    Map map;
    std::memset(&map, 0, sizeof(map));
    ASSERT_TRUE(map.Init());
    std::vector<int> values(100);
    for (int32_t key = 0; key < 100; ++key) {
        values[key] = key * 3;
        map.FindOrInsert(key * 7 % 101)->m_pair.pValue = &values[key];
    }
    int sum = 0;
    int calls = 0;
    const std::size_t freed = map.Free([&](int* value) {
        sum += *value;
        ++calls;
    });
    EXPECT_EQ(freed, 100u);
    EXPECT_EQ(calls, 100);
    EXPECT_EQ(sum, 3 * 99 * 100 / 2);
    EXPECT_EQ(map.m_pHead, nullptr);
    EXPECT_EQ(map.m_nSize, 0u);
}

TEST(OrderedMap, FreeOfAnEmptyMadeMapFreesOnlyTheHead) {
    Map map;
    std::memset(&map, 0, sizeof(map));
    ASSERT_TRUE(map.Init());
    EXPECT_EQ(map.Free([](int*) { ADD_FAILURE(); }), 0u);
    EXPECT_EQ(map.m_pHead, nullptr);
}

}  // namespace
