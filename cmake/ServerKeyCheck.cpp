// Compiles only if VELMORCORE_SERVER_PUBLIC_KEY is a point of secp256k1 that a sound private key can have.
// The compiler does the arithmetic, so that a build for another machine is checked as well.
#include <cstdint>

namespace {

// Most significant word first.
struct Number {
    std::uint32_t words[8];
};

constexpr Number kPrime = {
    {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFE, 0xFFFFFC2F}};
constexpr Number kBaseX = {
    {0x79BE667E, 0xF9DCBBAC, 0x55A06295, 0xCE870B07, 0x029BFCDB, 0x2DCE28D9, 0x59F2815B, 0x16F81798}};
constexpr Number kSeven = {{0, 0, 0, 0, 0, 0, 0, 7}};

constexpr bool IsLess(Number const& a, Number const& b) {
    for (int i = 0; i < 8; ++i) {
        if (a.words[i] != b.words[i]) {
            return a.words[i] < b.words[i];
        }
    }
    return false;
}

constexpr bool IsEqual(Number const& a, Number const& b) {
    return !IsLess(a, b) && !IsLess(b, a);
}

constexpr Number AddModulo(Number const& a, Number const& b) {
    Number sum{};
    std::uint64_t carry = 0;
    for (int i = 7; i >= 0; --i) {
        carry += std::uint64_t{a.words[i]} + b.words[i];
        sum.words[i] = static_cast<std::uint32_t>(carry);
        carry >>= 32U;
    }
    if (carry == 0 && IsLess(sum, kPrime)) {
        return sum;
    }
    std::uint64_t borrow = 0;
    for (int i = 7; i >= 0; --i) {
        std::uint64_t const difference = std::uint64_t{sum.words[i]} - kPrime.words[i] - borrow;
        sum.words[i] = static_cast<std::uint32_t>(difference);
        borrow = difference >> 63U;
    }
    return sum;
}

constexpr Number MultiplyModulo(Number const& a, Number const& b) {
    Number product{};
    for (unsigned int bit = 0; bit < 256; ++bit) {
        product = AddModulo(product, product);
        if ((b.words[bit / 32] >> (31 - bit % 32) & 1U) != 0) {
            product = AddModulo(product, a);
        }
    }
    return product;
}

constexpr std::uint32_t Digit(char letter) {
    return static_cast<std::uint32_t>(letter <= '9' ? letter - '0' : (letter | 0x20) - 'a' + 10);
}

constexpr Number Read(char const* digits) {
    Number number{};
    for (int i = 0; i < 64; ++i) {
        number.words[i / 8] = number.words[i / 8] << 4U | Digit(digits[i]);
    }
    return number;
}

constexpr Number kX = Read(VELMORCORE_SERVER_PUBLIC_KEY);
constexpr Number kY = Read(VELMORCORE_SERVER_PUBLIC_KEY + 64);

static_assert(sizeof VELMORCORE_SERVER_PUBLIC_KEY == 129, "the key has 128 digits");
static_assert(IsLess(kX, kPrime) && IsLess(kY, kPrime), "a coordinate is below the prime");
static_assert(IsEqual(MultiplyModulo(kY, kY), AddModulo(MultiplyModulo(MultiplyModulo(kX, kX), kX), kSeven)),
              "the point lies on the curve");
static_assert(!IsEqual(kX, kBaseX), "the private key isn't 1, nor its opposite");

}  // namespace
