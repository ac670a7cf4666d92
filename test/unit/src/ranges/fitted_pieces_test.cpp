#include "ranges/fitted_pieces.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

const std::vector<double> kValues = {-1.0, 0.0, 0.5, 0.5, 0.5, 2.0, 3.0, 3.0};

FittedPieces::Distributions Exponential() {
  ReferenceDistribution given;
  given.SetFamily("exponential");
  return {FittedDistribution(given)};
}

FittedPieces PieceOf(FittedPieces piece, std::size_t begin, std::size_t end) {
  const std::vector<std::uint32_t> groups(kValues.size());
  piece.Take(Units{kValues, groups, {}}.Part(begin, end));
  piece.Finish();
  return piece;
}

std::vector<std::uint8_t> BytesOf(const FittedPieces& pieces) {
  ByteWriter write;
  pieces.Write(write);
  return write.bytes;
}

// What whole samples come to, the tests of the Python package compare with the test itself.
TEST(FittedPiecesTest, AreCompleteWithAllPiecesInTheirOrder) {
  const auto wanted = Exponential();
  constexpr std::size_t kCut = 4;  // between equal values
  FittedPieces first = PieceOf(FittedPieces(wanted), 0, kCut);
  first.Append(PieceOf(FittedPieces(wanted), kCut, kValues.size()));
  EXPECT_EQ(first.Totals()[0].Excluded(), 1);
  EXPECT_EQ(first.Totals()[0].Last(), (FittedSums::Cell{3.0, 2}));
  const std::vector<FitPass> pass = first.NextPass(wanted);
  EXPECT_TRUE(pass[0].IsSound());
  EXPECT_EQ(pass[0].starts[0].lastBehind, 1);
  EXPECT_EQ(pass[0].starts[1].before, 3);
  EXPECT_EQ(pass[0].starts[1].firstBefore, 2);
  const FittedPieces low = PieceOf({wanted, pass, 0}, 0, kCut);
  const FittedPieces high = PieceOf({wanted, pass, 1}, kCut, kValues.size());
  FittedPieces both = low;
  EXPECT_FALSE(both.AreComplete(wanted)) << "the second piece is missing";
  EXPECT_FALSE(both.Precede(low)) << "twice the same piece";
  EXPECT_FALSE(both.Precede(first)) << "of the first pass";
  ASSERT_TRUE(both.Precede(high));
  both.Append(high);
  EXPECT_TRUE(both.AreComplete(wanted));
  FittedPieces other = low;
  other.Append(PieceOf({wanted, pass, 1}, kCut, kValues.size() - 1));
  EXPECT_FALSE(other.AreComplete(wanted)) << "a record is missing";
}

TEST(FittedPiecesTest, BytesThatAreNoneAreRefusedOrHarmless) {
  const auto wanted = Exponential();
  const std::vector<FitPass> pass = PieceOf(FittedPieces(wanted), 0, 8).NextPass(wanted);
  const FittedPieces piece = PieceOf({wanted, pass, 0}, 0, 8);
  const std::vector<std::uint8_t> bytes = BytesOf(piece);
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    ByteReader read({bytes.data(), length});
    EXPECT_FALSE(FittedPieces().Read(read)) << length;
  }
  std::size_t refused = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    std::vector<std::uint8_t> wrong = bytes;
    wrong[i] ^= 0xA5U;
    ByteReader read(wrong);
    FittedPieces pieces;
    if (!pieces.Read(read) || pieces.Count() != 1) {
      ++refused;
      continue;
    }
    if (pieces.Precede(piece)) pieces.Append(piece);
    static_cast<void>(pieces.AreComplete(wanted));
    EXPECT_EQ(pieces.NextPass(wanted).size(), 1U);
  }
  EXPECT_GT(refused, bytes.size() / 4);
}

}  // namespace
