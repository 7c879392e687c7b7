#include "reference/agent/sha256.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using pcg::refagent::CSha256;
using pcg::refagent::Sha256Hex;

// Published test vectors of the algorithm.
TEST(Sha256, EmptyMessage) {
    EXPECT_EQ(Sha256Hex("", 0), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
}

TEST(Sha256, ThreeBytes) {
    EXPECT_EQ(Sha256Hex("abc", 3), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

TEST(Sha256, TwoBlockMessage) {
    const std::string message = "abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq";
    EXPECT_EQ(Sha256Hex(message.data(), message.size()),
              "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
}

TEST(Sha256, FourBlockMessage) {
    const std::string message =
        "abcdefghbcdefghicdefghijdefghijkefghijklfghijklmghijklmnhijklmnoijklmnopjklmnopqklmnopqrlmnopqrsmnopqrstnopqrstu";
    EXPECT_EQ(Sha256Hex(message.data(), message.size()),
              "cf5b16a778af8380036ce59e7b0492370b249b11e8f07a51afac45037afee9d1");
}

TEST(Sha256, MillionLetters) {
    const std::string message(1000000, 'a');
    EXPECT_EQ(Sha256Hex(message.data(), message.size()),
              "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

// Padding crosses into a second block from 56 bytes on; every length around
// the block edges must give the same digest fed whole or byte by byte.
TEST(Sha256, PiecewiseUpdatesEqualOneUpdateAtEveryLength) {
    std::vector<unsigned char> bytes(200);
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        bytes[index] = static_cast<unsigned char>(index * 7 + 3);
    }
    for (std::size_t length = 0; length <= bytes.size(); ++length) {
        CSha256 piecewise;
        for (std::size_t index = 0; index < length; ++index) {
            piecewise.Update(&bytes[index], 1);
        }
        EXPECT_EQ(piecewise.FinishHex(), Sha256Hex(bytes.data(), length)) << length;
    }
}

TEST(Sha256, FiftyFiveAndFiftySixBytesDiffer) {
    const std::string a55(55, 'a');
    const std::string a56(56, 'a');
    EXPECT_EQ(Sha256Hex(a55.data(), a55.size()), "9f4390f8d30c2dd92ec9f095b65e2b9ae9b0a925a5258e241c9f1e910f734318");
    EXPECT_EQ(Sha256Hex(a56.data(), a56.size()), "b35439a4ac6f0948b6d6f9e3c6af0f5f590ce20f1bde7090ef7970686ec6738a");
}

}  // namespace
