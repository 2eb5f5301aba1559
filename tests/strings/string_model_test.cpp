// The string family against a plain std::basic_string model of the same rules (cut at the
// capacity, case folded to ASCII upper case where the name says so): random sequences of
// operations on small capacities of every template. After every operation the record must
// keep its invariants (length within capacity, terminator behind the text) and hold exactly
// the model's text; searches and comparisons must agree with the model. Under
// AddressSanitizer any access outside a record is caught as well.
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <random>
#include <type_traits>

#include <gtest/gtest.h>

#include "strings/kz_string.h"
#include "strings/kz_string8.h"

namespace {

// The decisions of a run, drawn from one seeded generator.
struct Input {
    std::mt19937 random{20261124};
    int small(int range) { return static_cast<int>(random() % static_cast<unsigned>(range)); }
    int byte() { return small(256); }
};

// How often each operation was tried: every one must be.
int reached[24] = {};

void fail(const char* what, int step) { ADD_FAILURE() << what << " differs from the model at step " << step; }

template <typename C>
int modelValue(C c) {
    return sizeof(C) == 1 ? static_cast<signed char>(c) : static_cast<int>(static_cast<unsigned short>(c));
}

template <typename C>
std::basic_string<C> upper(std::basic_string<C> s) {
    for (C& c : s)
        if (modelValue(c) >= 'a' && modelValue(c) <= 'z') c = static_cast<C>(c - 32);
    return s;
}

template <typename C>
int modelIndexOf(const std::basic_string<C>& s, const std::basic_string<C>& p, int start, bool fold) {
    if (p.empty()) return -1;
    if (start < 0) start = 0;
    if (static_cast<size_t>(start) + p.size() > s.size()) return -1;
    const size_t at =
        fold ? upper(s).find(upper(p), static_cast<size_t>(start)) : s.find(p, static_cast<size_t>(start));
    return at == std::basic_string<C>::npos ? -1 : static_cast<int>(at);
}

template <typename C>
void modelReplace(std::basic_string<C>& s, const std::basic_string<C>& from, const std::basic_string<C>& to,
                  size_t capacity, bool fold) {
    int p = modelIndexOf(s, from, 0, fold);
    while (p >= 0) {
        s = (s.substr(0, static_cast<size_t>(p)) + to + s.substr(static_cast<size_t>(p) + from.size()))
                .substr(0, capacity);
        p = modelIndexOf(s, from, p + static_cast<int>(to.size()), fold);
    }
}

template <typename C>
void modelRemove(std::basic_string<C>& s, const std::basic_string<C>& pattern, bool fold) {
    int p = modelIndexOf(s, pattern, 0, fold);
    while (p >= 0) {
        s.erase(static_cast<size_t>(p), pattern.size());
        p = modelIndexOf(s, pattern, p, fold);
    }
}

template <typename C>
void modelTrim(std::basic_string<C>& s) {
    auto space = [](C c) {
        const int v = modelValue(c);
        return v == 0 || v == 9 || v == 10 || v == 13 || v == 32;
    };
    while (!s.empty() && space(s.back())) s.pop_back();
    size_t first = 0;
    while (first < s.size() && space(s[first])) ++first;
    s.erase(0, first);
}

// The order of two characters as memcmp sees them in storage: bytes unsigned, 16-bit
// characters low byte first.
template <typename C>
int byteOrder(C a, C b) {
    const unsigned x = static_cast<unsigned short>(a) & (sizeof(C) == 1 ? 0xFFu : 0xFFFFu);
    const unsigned y = static_cast<unsigned short>(b) & (sizeof(C) == 1 ? 0xFFu : 0xFFFFu);
    if ((x & 0xFF) != (y & 0xFF)) return (x & 0xFF) < (y & 0xFF) ? -1 : 1;
    return x == y ? 0 : (x < y ? -1 : 1);
}

template <typename C>
int modelCompare(const std::basic_string<C>& a, const std::basic_string<C>& b) {
    const std::basic_string<C> x = upper(a), y = upper(b);
    for (size_t i = 0; i < x.size() && i < y.size(); ++i)
        if (int order = byteOrder(x[i], y[i])) return order;
    return x.size() == y.size() ? 0 : (x.size() < y.size() ? -1 : 1);
}

int sign(int v) { return (v > 0) - (v < 0); }

// The older 8-bit layout has no numbers, and only the current 8-bit template hex codes.
template <typename S>
constexpr bool kHasNumbers = !std::is_same_v<S, _kzString8_UnevenSize_old<S::capacity>>;
template <typename S>
constexpr bool kHasHex = std::is_same_v<S, _kzString8_allSize<S::capacity>>;

template <typename C>
std::basic_string<C> widen(const std::string& text) {
    return std::basic_string<C>(text.begin(), text.end());
}

// Random text of the record's character type: few distinct letters of both cases, so
// that patterns match often, and now and then a character above 0x7F.
template <typename C>
std::basic_string<C> randomText(Input& in, int maxLength) {
    static const char alphabet[] = {'a', 'A', 'b', 'B', ' ', '\t', '.', '\xE4', 'z', '\r'};
    std::basic_string<C> text;
    const int n = in.small(maxLength + 1);
    for (int i = 0; i < n; ++i) {
        const int pick = in.small(12);
        if (pick < 10)
            text += static_cast<C>(alphabet[pick]);
        else if (sizeof(C) == 2)
            text += static_cast<C>(0x100 + in.byte());
        else
            text += static_cast<C>('a' + in.small(3));
    }
    return text;
}

template <typename S, typename C>
S recordOf(const std::basic_string<C>& text) {
    S s;
    s.add(text.data(), static_cast<unsigned>(text.size()));
    return s;
}

template <typename S, typename C>
void check(const S& s, const std::basic_string<C>& model, int step) {
    if (s.length > S::capacity) fail("length above capacity", step);
    if (s.data[s.length] != 0) fail("terminator", step);
    if (std::basic_string<C>(s.data, s.length) != model) fail("text", step);
}

template <typename S, typename C>
void run(Input& in) {
    constexpr int N = S::capacity;
    S s;
    std::basic_string<C> model;
    for (int step = 0, steps = in.small(65); step < steps && !::testing::Test::HasFailure(); ++step) {
        const std::basic_string<C> a = randomText<C>(in, N + 2);
        const std::basic_string<C> b = randomText<C>(in, 3);
        const S ra = recordOf<S>(a.substr(0, N)), rb = recordOf<S>(b);
        const std::basic_string<C> pa = a.substr(0, N);
        const int start = in.small(N + 3) - 1;
        const int operation = in.small(24);
        ++reached[operation];
        switch (operation) {
        case 0:
            s = ra;
            model = pa;
            break;
        case 1:
            if (in.small(2))
                s.add(a.data(), static_cast<unsigned>(a.size()));
            else
                for (const C c : a) s += c; // one character at a time, also into a full record
            model = (model + a).substr(0, N);
            break;
        case 2: {
            const bool fold = in.small(2);
            fold ? s.replace(rb, ra) : s.replaceCaseSen(rb, ra);
            modelReplace(model, b, pa, N, fold);
            break;
        }
        case 3: {
            const bool fold = in.small(2);
            fold ? s.remove(rb) : s.removeCaseSens(rb);
            modelRemove(model, b, fold);
            break;
        }
        case 4:
            s.trim();
            modelTrim(model);
            break;
        case 5:
            if (s.indexOf(rb, start) != modelIndexOf(model, b, start, true)) fail("indexOf", step);
            if (s.indexOfCaseSen(rb, start) != modelIndexOf(model, b, start, false))
                fail("indexOfCaseSen", step);
            break;
        case 6:
            if (sign(s.compare(ra)) != sign(modelCompare(model, pa))) fail("compare", step);
            if (s.isEqual(ra) != (upper(model) == upper(pa))) fail("isEqual", step);
            break;
        case 7: {
            const int at = in.small(N + 2);
            s.insert(at, rb);
            const size_t p = static_cast<size_t>(at) < model.size() ? static_cast<size_t>(at) : model.size();
            // Cutting the joined text at N cuts the old tail first, then the inserted text.
            model = (model.substr(0, p) + b + model.substr(p)).substr(0, N);
            break;
        }
        case 8: {
            const int from = in.small(N + 1), count = in.small(N + 1);
            s.remove(from, count);
            const size_t f =
                static_cast<size_t>(from) < model.size() ? static_cast<size_t>(from) : model.size();
            model.erase(f, static_cast<size_t>(count));
            break;
        }
        case 9:
            s.makeUpper();
            model = upper(model);
            break;
        case 10: {
            const int n = in.small(N + 2) - 1;
            const S left = s.left(n);
            if (std::basic_string<C>(left.data, left.length) !=
                model.substr(0, n < 0 ? 0 : static_cast<size_t>(n)))
                fail("left", step);
            break;
        }
        case 11: {
            const bool fits = !b.empty() && b.size() <= model.size();
            const bool starts = fits && upper(model.substr(0, b.size())) == upper(b);
            const bool startsExactly = fits && model.compare(0, b.size(), b) == 0;
            const bool ends = fits && upper(model.substr(model.size() - b.size())) == upper(b);
            if (s.startsWith(rb) != starts) fail("startsWith", step);
            if (s.startsWithCaseSen(rb) != startsExactly) fail("startsWithCaseSen", step);
            if (s.endsWith(rb) != ends) fail("endsWith", step);
            break;
        }
        case 12: {
            // Backwards, exactly; a start outside the text starts at its end.
            const C c = b.empty() ? C('a') : b[0];
            int expected = -1;
            const int last = static_cast<int>(model.size()) - 1;
            for (int i = (start >= 0 && start <= last) ? start : last; i >= 0; --i)
                if (model[static_cast<size_t>(i)] == c) {
                    expected = i;
                    break;
                }
            if (s.lastIndexOf(c, start) != expected) fail("lastIndexOf", step);
            break;
        }
        case 13: {
            const long long v = static_cast<long long>(in.byte()) * 997 - 100000;
            if constexpr (kHasNumbers<S>) {
                s.addNr(v);
                model = (model + widen<C>(std::to_string(v))).substr(0, N);
            }
            break;
        }
        case 14: {
            const int v = static_cast<int>(in.byte()) * 65537 * (in.small(2) ? -1 : 1);
            char hex[16];
            std::snprintf(hex, sizeof hex, "%08X", static_cast<unsigned>(v));
            if constexpr (kHasHex<S>) {
                s.addHexCode(v);
                model = (model + widen<C>(hex)).substr(0, N);
            }
            break;
        }
        case 15: {
            // A length below 1 empties, one above the capacity fills it; behind the old
            // text a longer length shows what lay there before.
            const int n = in.small(N + 4) - 2;
            s.setLength(n);
            const int expected = n < 1 ? 0 : (n > N ? N : n);
            if (s.length != expected) fail("setLength", step);
            if (expected <= static_cast<int>(model.size())) model.resize(static_cast<size_t>(expected));
            else model.assign(s.data, s.length);
            break;
        }
        case 17: {
            // The place of the last-listed pattern found, or 0 at once for one found at 0.
            const std::basic_string<C> c2 = randomText<C>(in, 3);
            int which = 7, expectedWhich = -1, expected = -1;
            for (int k = 0; k < 2 && expected != 0; ++k) {
                const int at = modelIndexOf(model, k ? c2 : b, 0, true);
                if (at < 0) continue;
                expectedWhich = k;
                expected = at;
            }
            if (s.indexOfFirstOcc(rb, recordOf<S>(c2), &which) != expected) fail("indexOfFirstOcc", step);
            if (which != expectedWhich) fail("indexOfFirstOcc's pattern", step);
            break;
        }
        case 18: {
            // A field of abs(width) places, blanks behind the text for a positive width and in
            // front for a negative one; the text is cut only by the capacity.
            const int width = in.small(2 * N + 1) - N;
            const size_t room = static_cast<size_t>(N) - model.size();
            const size_t used = b.size() < room ? b.size() : room;
            const size_t field = static_cast<size_t>(width < 0 ? -width : width) < room ? static_cast<size_t>(width < 0 ? -width : width) : room;
            const std::basic_string<C> blanks(field > used ? field - used : 0, C(' '));
            s.addSpacing(b.c_str(), width);
            model += (width < 0 ? blanks : std::basic_string<C>()) + b.substr(0, used) + (width > 0 ? blanks : std::basic_string<C>());
            break;
        }
        case 19: {
            // One character, folded or exactly; a start below 1 or at or behind the end
            // searches from the beginning.
            const C c = b.empty() ? C('a') : b[0];
            const int from = (start < 1 || start >= static_cast<int>(model.size())) ? 0 : start;
            int folded = -1, exact = -1;
            for (int i = static_cast<int>(model.size()) - 1; i >= from; --i) {
                if (upper(model.substr(static_cast<size_t>(i), 1)) == upper(std::basic_string<C>(1, c))) folded = i;
                if (model[static_cast<size_t>(i)] == c) exact = i;
            }
            if (s.indexOf(c, start) != folded) fail("indexOf of a character", step);
            if (s.indexOfCaseSen(c, start) != exact) fail("indexOfCaseSen of a character", step);
            break;
        }
        case 20: {
            // Ordering as memcmp sees the characters in storage, the shorter first on a common
            // prefix; equality of the whole text.
            int order = 0;
            for (size_t i = 0; i < model.size() && i < pa.size() && order == 0; ++i) order = byteOrder(model[i], pa[i]);
            if ((s < ra) != (order < 0 || (order == 0 && model.size() < pa.size()))) fail("ordering", step);
            if ((s == ra) != (model == pa)) fail("equality", step);
            break;
        }
        case 21: {
            // The count only gates (at least 1, at most the length): the prefix is the text's
            // first `count` characters, the suffix the whole text.
            if (sizeof(C) != 1) break;
            const std::string text(b.begin(), b.end());
            const int count = in.small(static_cast<int>(text.size()) + 2) - 1; // the text holds `count` characters
            const bool gate = !model.empty() && count > 0 && count <= static_cast<int>(model.size());
            const std::string narrow(model.begin(), model.end()), head = text.substr(0, static_cast<size_t>(count < 0 ? 0 : count));
            const bool starts = gate && !head.empty() && head.size() <= narrow.size() && upper(narrow.substr(0, head.size())) == upper(head);
            const bool ends = gate && !text.empty() && text.size() <= narrow.size() && upper(narrow.substr(narrow.size() - text.size())) == upper(text);
            if (s.startsWith(text.c_str(), count) != starts) fail("startsWith with a count", step);
            if (s.endsWith(text.c_str(), count) != ends) fail("endsWith with a count", step);
            break;
        }
        case 22: {
            // Up to the first delimiter (ignoring case), with it for `flag`; a delimiter at 0
            // gives the empty text with it and the delimiter alone without. leftNCut keeps
            // what stands behind the delimiter, or nothing where there is none.
            const C d = b.empty() ? C('.') : b[0];
            const bool flag = in.small(2);
            int at = -1;
            for (size_t i = 0; i < model.size() && at < 0; ++i)
                if (upper(model.substr(i, 1)) == upper(std::basic_string<C>(1, d))) at = static_cast<int>(i);
            const std::basic_string<C> head = at < 0 ? model : at > 0 ? model.substr(0, static_cast<size_t>(flag ? at + 1 : at))
                                                     : flag ? std::basic_string<C>() : std::basic_string<C>(1, d);
            const S left = s.left(d, flag), cut = s.leftNCut(d, flag);
            if (std::basic_string<C>(left.data, left.length) != head) fail("left by a delimiter", step);
            if (std::basic_string<C>(cut.data, cut.length) != head) fail("leftNCut", step);
            model = at < 0 ? std::basic_string<C>() : model.substr(static_cast<size_t>(at) + 1);
            break;
        }
        case 23: {
            // Digits with a leading minus only; anything else is no number and gives 0.
            std::string digits;
            for (int n = in.small(6); n > 0; --n) digits += "-0123456789x "[in.small(13)];
            const S number = recordOf<S>(widen<C>(digits));
            bool valid = true;
            for (size_t i = 0; i < digits.size(); ++i)
                valid = valid && ((digits[i] >= '0' && digits[i] <= '9') || (i == 0 && digits[i] == '-'));
            bool ok = !valid;
            if constexpr (kHasNumbers<S>) {
                if (number.toInt(&ok) != (valid ? std::atoi(digits.c_str()) : 0)) fail("toInt", step);
                if (ok != valid) fail("toInt's answer", step);
            }
            break;
        }
        default: {
            const C c = b.empty() ? C('a') : b[0];
            s.remove(c);
            std::basic_string<C> kept;
            for (C x : model)
                if (upper(std::basic_string<C>(1, x)) != upper(std::basic_string<C>(1, c))) kept += x;
            model = kept;
            break;
        }
        }
        check(s, model, step);
    }
}

TEST(StringModel, EveryOperationOnEveryTemplateAgreesWithThePlainModel) {
    Input in;
    for (int runs = 0; runs < 20000 && !::testing::Test::HasFailure(); ++runs) {
        switch (in.small(5)) {
        case 0:
            run<_kzString8_allSize<6>, char>(in);
            break;
        case 1:
            run<_kzString8_allSize<7>, char>(in);
            break;
        case 2:
            run<_kzString8_UnevenSize_old<7>, char>(in);
            break;
        case 3:
            run<_kzString<10>, unsigned short>(in);
            break;
        default:
            run<_kzString_old<10>, unsigned short>(in);
            break;
        }
    }
    for (int operation = 0; operation < 24; ++operation) EXPECT_GT(reached[operation], 0) << "operation " << operation;
}

} // namespace
