#pragma once
// Reading and writing fixed-width numbers in a given byte order, for the binary formats.
// Every byte-order decision of the format code goes through these helpers.

#include <bit>
#include <cstdint>
#include <cstring>

namespace byte_order_detail {
inline std::uint32_t Swap32(std::uint32_t v) {
    return (v >> 24) | ((v >> 8) & 0x0000FF00u) | ((v << 8) & 0x00FF0000u) | (v << 24);
}
inline std::uint64_t Swap64(std::uint64_t v) {
    return (static_cast<std::uint64_t>(Swap32(static_cast<std::uint32_t>(v))) << 32) |
           Swap32(static_cast<std::uint32_t>(v >> 32));
}
inline std::uint16_t Swap16(std::uint16_t v) {
    return static_cast<std::uint16_t>((v >> 8) | (v << 8));
}

template <typename T>
T Load(const unsigned char* p) {
    T v;
    std::memcpy(&v, p, sizeof v);
    return v;
}
template <typename T>
void Store(unsigned char* p, T v) {
    std::memcpy(p, &v, sizeof v);
}
constexpr bool kLittle = std::endian::native == std::endian::little;
}  // namespace byte_order_detail

inline std::uint16_t readLE16(const unsigned char* p) {
    using namespace byte_order_detail;
    const auto v = Load<std::uint16_t>(p);
    return kLittle ? v : Swap16(v);
}
inline std::uint32_t readLE32(const unsigned char* p) {
    using namespace byte_order_detail;
    const auto v = Load<std::uint32_t>(p);
    return kLittle ? v : Swap32(v);
}
inline std::uint32_t readBE32(const unsigned char* p) {
    using namespace byte_order_detail;
    const auto v = Load<std::uint32_t>(p);
    return kLittle ? Swap32(v) : v;
}
inline std::int32_t readLEInt32(const unsigned char* p) {
    return std::bit_cast<std::int32_t>(readLE32(p));
}
inline std::int32_t readBEInt32(const unsigned char* p) {
    return std::bit_cast<std::int32_t>(readBE32(p));
}
inline double readLEDouble(const unsigned char* p) {
    using namespace byte_order_detail;
    const auto v = Load<std::uint64_t>(p);
    return std::bit_cast<double>(kLittle ? v : Swap64(v));
}

inline void writeLE16(unsigned char* p, std::uint16_t v) {
    using namespace byte_order_detail;
    Store(p, kLittle ? v : Swap16(v));
}
inline void writeLE32(unsigned char* p, std::uint32_t v) {
    using namespace byte_order_detail;
    Store(p, kLittle ? v : Swap32(v));
}
inline void writeBE32(unsigned char* p, std::uint32_t v) {
    using namespace byte_order_detail;
    Store(p, kLittle ? Swap32(v) : v);
}
inline void writeLEInt32(unsigned char* p, std::int32_t v) {
    writeLE32(p, std::bit_cast<std::uint32_t>(v));
}
inline void writeBEInt32(unsigned char* p, std::int32_t v) {
    writeBE32(p, std::bit_cast<std::uint32_t>(v));
}
inline void writeLEDouble(unsigned char* p, double v) {
    using namespace byte_order_detail;
    const auto bits = std::bit_cast<std::uint64_t>(v);
    Store(p, kLittle ? bits : Swap64(bits));
}
