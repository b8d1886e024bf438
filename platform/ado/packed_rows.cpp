// Packing values: the type in a byte, then the value; a text's length before it, seven bits a byte.
#include "platform/ado/packed_rows.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>

namespace pelm::ado {
namespace {

using Type = Variant::Type;

constexpr std::size_t kLargestChunk = std::size_t{1} << 20;
constexpr std::size_t kBitsEach = 7;
constexpr std::size_t kMore = std::size_t{1} << kBitsEach;

std::size_t length_bytes(std::size_t length) {
  std::size_t bytes = 1;
  for (; length >= kMore; length >>= kBitsEach) ++bytes;
  return bytes;
}

/// Of a value that is no text, without its type's byte.
std::size_t fixed_bytes(Type type) {
  switch (type) {
    case Type::Null:
      return 0;
    case Type::Boolean:
      return sizeof(bool);
    case Type::Integer:
      return sizeof(std::int16_t);
    case Type::Long:
      return sizeof(std::int32_t);
    case Type::Double:
      return sizeof(double);
    case Type::Date:
      return sizeof(Date);
    default:
      throw std::logic_error("a cursor gives no such value");
  }
}

std::size_t packed_size(const Variant& value) {
  if (value.type() != Type::Text) return 1 + fixed_bytes(value.type());
  const std::size_t length = value.text().size();
  return 1 + length_bytes(length) + length;
}

class Writer {
 public:
  explicit Writer(std::byte* at) : at_(at) {}

  void write(const Variant& value) {
    put(static_cast<std::uint8_t>(value.type()));
    switch (value.type()) {
      case Type::Boolean:
        return put(value.boolean());
      case Type::Integer:
        return put(value.integer());
      case Type::Long:
        return put(value.long_value());
      case Type::Double:
        return put(value.double_value());
      case Type::Date:
        return put(value.date());
      case Type::Text:
        return put_text(value.text());
      default:
        return;
    }
  }

 private:
  template <class T>
  void put(T value) {
    std::memcpy(at_, &value, sizeof value);
    at_ += sizeof value;
  }
  void put_text(const std::string& text) {
    std::size_t length = text.size();
    for (; length >= kMore; length >>= kBitsEach) {
      put(static_cast<std::uint8_t>(length | kMore));
    }
    put(static_cast<std::uint8_t>(length));
    std::memcpy(at_, text.data(), text.size());
    at_ += text.size();
  }

  std::byte* at_;
};

class Reader {
 public:
  explicit Reader(const std::byte* at) : at_(at) {}

  void skip() {
    if (const Type skipped = type(); skipped == Type::Text) {
      text();
    } else {
      at_ += fixed_bytes(skipped);
    }
  }

  Variant read() {
    switch (type()) {
      case Type::Boolean:
        return get<bool>();
      case Type::Integer:
        return get<std::int16_t>();
      case Type::Long:
        return get<std::int32_t>();
      case Type::Double:
        return get<double>();
      case Type::Date:
        return get<Date>();
      case Type::Text:
        return text();
      default:
        return Null{};
    }
  }

 private:
  template <class T>
  T get() {
    T value;
    std::memcpy(&value, at_, sizeof value);
    at_ += sizeof value;
    return value;
  }
  Type type() { return static_cast<Type>(get<std::uint8_t>()); }
  std::string_view text() {
    std::size_t length = 0;
    for (std::size_t shift = 0;; shift += kBitsEach) {
      const std::size_t part = get<std::uint8_t>();
      length |= (part & (kMore - 1)) << shift;
      if (part < kMore) break;
    }
    const std::string_view text(reinterpret_cast<const char*>(at_), length);
    at_ += length;
    return text;
  }

  const std::byte* at_;
};

}  // namespace

void PackedRows::append(std::span<const Variant> row) {
  std::size_t bytes = 0;
  for (const Variant& value : row) bytes += packed_size(value);
  std::byte* const start = take(bytes);
  Writer writer(start);
  for (const Variant& value : row) writer.write(value);
  rows_.push_back(start);
}

Variant PackedRows::value(std::size_t row, std::size_t column) const {
  Reader reader(rows_[row]);
  for (; column > 0; --column) reader.skip();
  return reader.read();
}

std::byte* PackedRows::take(std::size_t bytes) {
  if (bytes > left_) {
    const std::size_t size = std::max(bytes, next_chunk_);
    chunks_.push_back(std::make_unique_for_overwrite<std::byte[]>(size));
    next_chunk_ = std::min(2 * next_chunk_, kLargestChunk);
    free_ = chunks_.back().get();
    left_ = size;
  }
  std::byte* const taken = free_;
  free_ += bytes;
  left_ -= bytes;
  return taken;
}

}  // namespace pelm::ado
