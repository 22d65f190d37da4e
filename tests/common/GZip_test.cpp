#include "common/GZip.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <string>
#include <vector>

namespace {

// The bytes deflated with a gzip wrapper (window bits 31) or a zlib one (15).
std::vector<unsigned char> Deflate(const std::string& text, int windowBits) {
  z_stream stream{};
  EXPECT_EQ(deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, windowBits, 8, Z_DEFAULT_STRATEGY),
            Z_OK);
  std::vector<unsigned char> out(deflateBound(&stream, text.size()) + 32);
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
  stream.avail_in = static_cast<uInt>(text.size());
  stream.next_out = out.data();
  stream.avail_out = static_cast<uInt>(out.size());
  EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
  out.resize(stream.total_out);
  deflateEnd(&stream);
  return out;
}

std::vector<unsigned char> Gzip(const std::string& text) { return Deflate(text, 31); }

std::string SampleText() {
  std::string text;
  for (int i = 0; i < 200; ++i) text += "line " + std::to_string(i) + " of the note body\n";
  return text;
}

TEST(GZip, InflatesWholeData) {
  const std::string text = SampleText();
  std::vector<unsigned char> src = Gzip(text);
  std::vector<unsigned char> dst(text.size() + 100, 0xEE);
  unsigned int dstLen = static_cast<unsigned int>(dst.size());
  EXPECT_EQ(GZDecompress(src.data(), static_cast<unsigned int>(src.size()), dst.data(), &dstLen), 0);
  EXPECT_EQ(dstLen, text.size());
  EXPECT_EQ(std::string(dst.begin(), dst.begin() + dstLen), text);
  EXPECT_EQ(dst[text.size()], 0xEE);
}

TEST(GZip, CapacityZeroProducesNothing) {
  std::vector<unsigned char> src = Gzip("hello");
  unsigned char dst[4] = {0xEE, 0xEE, 0xEE, 0xEE};
  unsigned int dstLen = 0;
  EXPECT_EQ(GZDecompress(src.data(), static_cast<unsigned int>(src.size()), dst, &dstLen), 0);
  EXPECT_EQ(dstLen, 0u);
  for (unsigned char byte : dst) EXPECT_EQ(byte, 0xEE);
}

TEST(GZip, OutputStopsExactlyAtCapacity) {
  const std::string text = SampleText();
  std::vector<unsigned char> src = Gzip(text);
  for (unsigned int capacity : {1u, 10u, 2048u}) {
    std::vector<unsigned char> dst(capacity + 16, 0xEE);
    unsigned int dstLen = capacity;
    EXPECT_EQ(GZDecompress(src.data(), static_cast<unsigned int>(src.size()), dst.data(), &dstLen), 0);
    EXPECT_EQ(dstLen, capacity);
    EXPECT_EQ(std::string(dst.begin(), dst.begin() + capacity), text.substr(0, capacity));
    for (size_t i = capacity; i < dst.size(); ++i) EXPECT_EQ(dst[i], 0xEE) << capacity << " " << i;
  }
}

TEST(GZip, GarbageFailsAndKeepsTheLength) {
  unsigned char src[] = "this is not gzip data at all";
  unsigned char dst[64] = {};
  unsigned int dstLen = sizeof dst;
  EXPECT_EQ(GZDecompress(src, sizeof src - 1, dst, &dstLen), -1);
  EXPECT_EQ(dstLen, sizeof dst);
}

TEST(GZip, ZlibWrapperIsNotGzip) {
  std::vector<unsigned char> src = Deflate("hello hello hello", 15);
  unsigned char dst[64] = {};
  unsigned int dstLen = sizeof dst;
  EXPECT_EQ(GZDecompress(src.data(), static_cast<unsigned int>(src.size()), dst, &dstLen), -1);
  EXPECT_EQ(dstLen, sizeof dst);
}

TEST(GZip, CorruptedBodyFailsAndKeepsTheLength) {
  const std::string text = SampleText();
  std::vector<unsigned char> src = Gzip(text);
  // A stored-block header with a length that does not match its complement.
  src[10] = 0x00;
  src[11] = 0x05;
  src[12] = 0x00;
  src[13] = 0x00;
  src[14] = 0x00;
  std::vector<unsigned char> dst(text.size());
  unsigned int dstLen = static_cast<unsigned int>(dst.size());
  EXPECT_EQ(GZDecompress(src.data(), static_cast<unsigned int>(src.size()), dst.data(), &dstLen), -1);
  EXPECT_EQ(dstLen, dst.size());
}

TEST(GZip, TruncatedInputGivesWhatWasInflated) {
  const std::string text = SampleText();
  std::vector<unsigned char> src = Gzip(text);
  std::vector<unsigned char> dst(text.size());
  unsigned int dstLen = static_cast<unsigned int>(dst.size());
  const unsigned int half = static_cast<unsigned int>(src.size() / 2);
  EXPECT_EQ(GZDecompress(src.data(), half, dst.data(), &dstLen), 0);
  EXPECT_GT(dstLen, 0u);
  EXPECT_LT(dstLen, text.size());
  EXPECT_EQ(std::string(dst.begin(), dst.begin() + dstLen), text.substr(0, dstLen));
}

// Reading the whole input at once must answer as the byte-by-byte reading
// does, the bytes left in the buffer beyond the output included, for whole,
// cut, damaged and trailing-garbage streams and every kind of capacity.
TEST(GZip, AnswersAsTheStepwiseReadingDoes) {
  const std::string text = SampleText();
  std::vector<std::vector<unsigned char>> inputs;
  const std::vector<unsigned char> whole = Gzip(text);
  for (size_t cut : {size_t{1}, size_t{5}, size_t{10}, size_t{11}, whole.size() / 3, whole.size() - 8,
                     whole.size() - 1, whole.size()}) {
    inputs.emplace_back(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(cut));
  }
  for (size_t at : {size_t{3}, size_t{10}, size_t{12}, whole.size() / 2, whole.size() - 4}) {
    std::vector<unsigned char> damaged = whole;
    damaged[at] ^= 0x5A;
    inputs.push_back(damaged);
  }
  std::vector<unsigned char> trailing = whole;
  trailing.insert(trailing.end(), {'x', 'y', 'z'});
  inputs.push_back(trailing);
  inputs.push_back(Deflate("hello hello hello", 15));
  inputs.push_back(Gzip(""));
  for (const std::vector<unsigned char>& input : inputs) {
    for (unsigned int capacity : {1u, 14u, 100u, 2048u, static_cast<unsigned int>(text.size()) + 9}) {
      std::vector<unsigned char> src = input;
      std::vector<unsigned char> fast(capacity + 8, 0xEE);
      std::vector<unsigned char> stepwise(capacity + 8, 0xEE);
      unsigned int fastLen = capacity;
      unsigned int stepwiseLen = capacity;
      const int fastStatus = GZDecompress(src.data(), static_cast<unsigned int>(src.size()), fast.data(), &fastLen);
      const int stepwiseStatus =
          GZDecompressStepwise(src.data(), static_cast<unsigned int>(src.size()), stepwise.data(), &stepwiseLen);
      EXPECT_EQ(fastStatus, stepwiseStatus) << input.size() << " bytes, capacity " << capacity;
      EXPECT_EQ(fastLen, stepwiseLen) << input.size() << " bytes, capacity " << capacity;
      EXPECT_EQ(fast, stepwise) << input.size() << " bytes, capacity " << capacity;
    }
  }
}

// A stream of long repeats cut anywhere: the last bytes of input hold codes
// whose output the stepwise reading never writes, as it stops when its
// input is used up. Every cut and a capacity on either side of what it gives.
TEST(GZip, CutRepeatsAnswerAsTheStepwiseReadingDoes) {
  std::string text;
  for (int i = 0; i < 40; ++i) text += std::string(static_cast<size_t>(100 + i), static_cast<char>('a' + i % 7)) + "|";
  const std::vector<unsigned char> whole = Gzip(text);
  for (size_t cut = 1; cut <= whole.size(); ++cut) {
    for (unsigned int capacity : {64u, 2048u, static_cast<unsigned int>(text.size()) - 1,
                                  static_cast<unsigned int>(text.size()) + 1}) {
      std::vector<unsigned char> src(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(cut));
      std::vector<unsigned char> fast(capacity, 0xEE);
      std::vector<unsigned char> stepwise(capacity, 0xEE);
      unsigned int fastLen = capacity;
      unsigned int stepwiseLen = capacity;
      const int fastStatus = GZDecompress(src.data(), static_cast<unsigned int>(cut), fast.data(), &fastLen);
      const int stepwiseStatus =
          GZDecompressStepwise(src.data(), static_cast<unsigned int>(cut), stepwise.data(), &stepwiseLen);
      ASSERT_EQ(fastStatus, stepwiseStatus) << "cut " << cut << ", capacity " << capacity;
      ASSERT_EQ(fastLen, stepwiseLen) << "cut " << cut << ", capacity " << capacity;
      ASSERT_EQ(fast, stepwise) << "cut " << cut << ", capacity " << capacity;
    }
  }
}

TEST(GZip, EmptyInputProducesNothing) {
  unsigned char dst[8] = {};
  unsigned int dstLen = sizeof dst;
  EXPECT_EQ(GZDecompress(nullptr, 0, dst, &dstLen), 0);
  EXPECT_EQ(dstLen, 0u);
}

}  // namespace

namespace {

std::string AsText(const std::vector<unsigned char>& bytes) { return std::string(bytes.begin(), bytes.end()); }

TEST(Gunzip, InflatesAWholeStreamOfAnySize) {
  std::string text;
  for (int i = 0; i < 20000; ++i) text += std::to_string(i * 7919 % 10007) + ",";
  const std::string blob = AsText(Gzip(text));
  EXPECT_EQ(Gunzip(blob.data(), blob.size(), text.size()), text);
  EXPECT_EQ(Gunzip(blob.data(), blob.size(), 1u << 30), text);
}

TEST(Gunzip, GivesNothingPastTheLimitOrForACutOrForeignStream) {
  const std::string text(100000, 'z');
  const std::string blob = AsText(Gzip(text));
  EXPECT_EQ(Gunzip(blob.data(), blob.size(), text.size() - 1), std::nullopt);
  EXPECT_EQ(Gunzip(blob.data(), blob.size() - 4, text.size()), std::nullopt);
  EXPECT_EQ(Gunzip(blob.data(), 10, text.size()), std::nullopt);
  const std::string zlib = AsText(Deflate(text, 15));
  EXPECT_EQ(Gunzip(zlib.data(), zlib.size(), text.size()), std::nullopt);
  EXPECT_EQ(Gunzip("", 0, 10), std::nullopt);
}

}  // namespace
