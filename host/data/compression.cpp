#include "host/data/compression.h"

#include <zlib.h>
#include <zstd.h>
#include <zstd_errors.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>

namespace npar_host {
namespace {

constexpr std::string_view kGzip = "\x1F\x8B";
constexpr std::string_view kZstd = "\x28\xB5\x2F\xFD";
constexpr std::size_t kStep = std::size_t{1} << 20;  // bytes in and out
constexpr int kGzipWindow = 15 + 16;                 // the largest window, with gzip's header

constexpr const char* kDamaged =
    "the compressed data are damaged or end early; get the file once more";
constexpr const char* kLongWindow =
    "it is compressed with a window above 128 MB; unpack it first, as in "
    "zstd -dc --long=31 FILE | npar analyse - ...";

const char* Inflate(std::string_view bytes, ByteBuffer& text,
                    const std::function<void(const char*)>& isRead) {
  z_stream stream{};
  if (inflateInit2(&stream, kGzipWindow) != Z_OK) throw std::bad_alloc();
  const auto end = [](z_stream* each) { inflateEnd(each); };
  const std::unique_ptr<z_stream, decltype(end)> guard(&stream, end);
  int state = Z_OK;
  while (!bytes.empty() && (state == Z_OK || state == Z_BUF_ERROR || state == Z_STREAM_END)) {
    // A file may hold several streams one after the other; what else follows is padding.
    if (state == Z_STREAM_END && !bytes.starts_with(kGzip)) return nullptr;
    if (state == Z_STREAM_END) inflateReset(&stream);
    const auto given = static_cast<uInt>(std::min(bytes.size(), kStep));
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
    stream.avail_in = given;
    stream.next_out = reinterpret_cast<Bytef*>(text.Room(kStep));
    stream.avail_out = static_cast<uInt>(kStep);
    state = inflate(&stream, Z_NO_FLUSH);
    text.Append(kStep - stream.avail_out);
    bytes.remove_prefix(given - stream.avail_in);
    isRead(bytes.data());
    if (state == Z_MEM_ERROR) throw std::bad_alloc();
    const bool isStuck = state == Z_BUF_ERROR && stream.avail_out != 0;
    if (isStuck) break;
  }
  // What does not fit into one step of output is still to come when the input is at its end.
  while (state == Z_OK && stream.avail_out == 0) {
    stream.next_out = reinterpret_cast<Bytef*>(text.Room(kStep));
    stream.avail_out = static_cast<uInt>(kStep);
    state = inflate(&stream, Z_NO_FLUSH);
    text.Append(kStep - stream.avail_out);
  }
  return state == Z_STREAM_END ? nullptr : kDamaged;
}

/// What is wrong with the data of which zstd says so; a lack of memory is nothing of theirs.
const char* ZstdProblem(std::size_t answer) {
  switch (ZSTD_getErrorCode(answer)) {
    case ZSTD_error_memory_allocation:
      throw std::bad_alloc();
    case ZSTD_error_frameParameter_windowTooLarge:
      return kLongWindow;
    default:
      return kDamaged;
  }
}

const char* Unzstd(std::string_view bytes, ByteBuffer& text,
                   const std::function<void(const char*)>& isRead) {
  const std::unique_ptr<ZSTD_DStream, decltype(&ZSTD_freeDStream)> stream(ZSTD_createDStream(),
                                                                          ZSTD_freeDStream);
  if (stream == nullptr) throw std::bad_alloc();
  std::size_t left = 1;  // 0 at the end of a frame
  bool isFull = false;
  while (!bytes.empty() || isFull) {
    ZSTD_inBuffer in{bytes.data(), std::min(bytes.size(), kStep), 0};
    ZSTD_outBuffer out{text.Room(kStep), kStep, 0};
    left = ZSTD_decompressStream(stream.get(), &out, &in);
    if (ZSTD_isError(left) != 0) return ZstdProblem(left);
    text.Append(out.pos);
    bytes.remove_prefix(in.pos);
    isFull = left != 0 && out.pos == out.size;
    isRead(bytes.data());
  }
  return left == 0 ? nullptr : kDamaged;
}

}  // namespace

bool IsCompressed(std::string_view bytes) {
  return bytes.starts_with(kGzip) || bytes.starts_with(kZstd);
}

const char* Decompress(std::string_view bytes, ByteBuffer& text,
                       const std::function<void(const char*)>& isRead) {
  return bytes.starts_with(kGzip) ? Inflate(bytes, text, isRead) : Unzstd(bytes, text, isRead);
}

}  // namespace npar_host
