/* What is shown says what the value is. A polynomial is drawn as a table of monomials, put together from it by hand,
   shown in every style, and read back by the small reader of this test into a table that must be the same one. */
#include "by_hand.h"
#include "language/names.h"
#include "support/rand_numbers.h"
#include "top/driver.h"

#include <cctype>
#include <map>

using namespace tolvek;

namespace {

using exponents = std::vector<int>;
using monomials = std::map<exponents, int64_t, std::greater<>>;

const std::vector<std::string> names = {"x", "y1", "a_long_one", "t"};

/* ---- from the table to the polynomial ---- */

polynode *put_together(const monomials &m, std::size_t level) {
    const exponents &first = m.begin()->first;
    bool constant = m.size() == 1 &&
                    std::all_of(first.begin() + static_cast<long>(level), first.end(), [](int e) { return e == 0; });
    if (constant) return n(m.begin()->second);
    std::map<int, monomials, std::greater<>> by_exponent;
    for (const auto &[e, c] : m) by_exponent[e[level]][e] = c;
    polynode *head = nullptr, **end = &head;
    for (const auto &[e, part] : by_exponent) {
        polynode *coefficient = put_together(part, level + 1);
        *end = e == 0 && is_constant(coefficient) ? coefficient : t(e, coefficient);
        end = &(*end)->next;
    }
    return head;
}

/* ---- from the text to the table ---- */

struct reader {
    std::string text;
    std::size_t at = 0;

    explicit reader(std::string shown) : text(std::move(shown)) {
        std::erase_if(text, [](char c) { return c == ' ' || c == '\n' || c == '`'; });
    }
    char next() const { return at < text.size() ? text[at] : 0; }
    bool take(char c) {
        if (next() != c) return false;
        at++;
        return true;
    }
    int64_t number() {
        int64_t v = 0;
        while (std::isdigit(next())) v = 10 * v + (text[at++] - '0');
        return v;
    }
    int exponent() {
        if (!take('^')) return 1;
        bool parentheses = take('('), minus = take('-');
        int e = static_cast<int>(number());
        if (parentheses) {
            EXPECT_TRUE(take(')'));
        }
        return minus ? -e : e;
    }
    monomials variable() {
        std::string name;
        while (std::isalnum(next()) || next() == '_') name += text[at++];
        exponents e(names.size());
        auto which = std::find(names.begin(), names.end(), name);
        EXPECT_NE(which, names.end()) << name;
        if (which == names.end()) return {};
        e[static_cast<std::size_t>(which - names.begin())] = exponent();
        return {{e, 1}};
    }
    monomials factor() {
        if (std::isdigit(next())) return {{exponents(names.size()), number()}};
        if (!take('(')) return variable();
        monomials m = sum();
        EXPECT_TRUE(take(')')) << text.substr(at);
        return m;
    }
    bool factor_follows() { return std::isalnum(next()) || next() == '('; }
    monomials product() {
        monomials m = factor();
        while (take('*') || factor_follows()) {
            monomials a, b = factor();
            for (const auto &[e, c] : m)
                for (const auto &[f, d] : b) {
                    exponents g = e;
                    for (std::size_t i = 0; i < g.size(); i++) g[i] += f[i];
                    a[g] += c * d;
                }
            m = a;
        }
        return m;
    }
    monomials sum() {
        monomials m;
        for (bool first = true;; first = false) {
            int sign = take('-') ? -1 : first || take('+') ? 1 : 0;
            if (sign == 0) return m;
            for (const auto &[e, c] : product()) m[e] += sign * c;
        }
    }
    monomials whole() {
        monomials m = sum();
        EXPECT_EQ(at, text.size()) << text << "\nrest: " << text.substr(at);
        return m;
    }
};

/* Residues as they are kept, without the zero. */
monomials reduced(const monomials &m, int32_t modulus_of) {
    monomials r;
    for (auto [e, c] : m) {
        if (modulus_of > 0) c = (c % modulus_of + modulus_of) % modulus_of;
        if (c != 0) r[e] = c;
    }
    return r;
}

} // namespace

struct round_trip : exact_display {
    test_random rnd;

    int64_t coefficient() {
        if (rnd.one_in(3)) return rnd.one_in(2) ? 1 : -1;
        int64_t v = rnd.one_in(4) ? static_cast<int64_t>(rnd() >> 20) : rnd.below(50) + 1;
        return rnd.one_in(2) ? v : -v;
    }
    monomials draw() {
        monomials m;
        int spread = rnd.one_in(5) ? 3000 : 3;
        for (int count = 1 + rnd.below(12); count > 0; count--) {
            exponents e(names.size());
            for (int &x : e) x = rnd.one_in(2) ? 0 : rnd.below(spread) - (laurent ? spread / 2 : 0);
            m[e] = coefficient();
        }
        return m;
    }
    void check(const monomials &drawn, int32_t modulus_now) {
        const monomials m = reduced(drawn, modulus_now);
        if (m.empty()) return;
        for (int on_screen_now : {0, 1}) {
            polynode *p = put_together(m, 0);
            EXPECT_EQ(poly_rule_broken(p, polynames), 0);
            std::string text = shown(p, {.want_continuation = on_screen_now});
            EXPECT_EQ(reduced(reader(text).whole(), modulus_now), m) << text;
        }
    }
    void check_styles(int count, int32_t modulus_now) {
        for (int i = 0; i < count && !HasFailure(); i++) {
            monomial_list = rnd.below(2);
            uglyprint = rnd.below(2);
            continuation = uglyprint ? ' ' : '`';
            laurent = rnd.below(2);
            alt_form_display = rnd.below(2);
            static constexpr int margins[] = {76, 76, 30, 20, 9, 1, 0};
            dispcutoff = margins[rnd.below(7)];
            check(draw(), modulus_now);
        }
    }
    void SetUp() override {
        exact_display::SetUp();
        name_variables({"x", "y1", "a_long_one", "t"});
        do_line_sup = 0;
    }
};

TEST_F(round_trip, integers) { check_styles(times(2000), 0); }

TEST_F(round_trip, residues) {
    for (int32_t m : {2, 3, 7, 101, 46337, 2147483629}) {
        take_modulus(m);
        check_styles(times(300), m);
    }
}

/* Reading the text of a screen: a line that is continued ends in a blank and the mark, and no other does. */
TEST_F(round_trip, every_line_end_on_the_screen_has_its_mark) {
    for (int i = 0; i < times(500); i++) {
        monomial_list = rnd.below(2);
        dispcutoff = 10 + rnd.below(60);
        std::string text = shown(put_together(draw(), 0));
        for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at++)
            ASSERT_EQ(text.substr(at - 2, 2), " `") << text;
    }
}

/* ---- through the prompt ---- */

template <class base> struct at_the_prompt : base {
    test_random rnd;
    void SetUp() override {
        base::SetUp();
        this->run("&(J = x)\n&(J = y)\n&(J = z)");
        do_line_sup = 0;
    }
    void TearDown() override {
        forget_variables();
        free_quoly(&prevnum);
        forget_poly_variables();
        laurent = 0;
        base::TearDown();
    }
    std::string factor() {
        auto number = [&] { return std::to_string(rnd.below(30) - 15); };
        static const char *const variable[] = {"x", "y", "z"};
        std::string text = "(" + number();
        for (int terms = 1 + rnd.below(3); terms > 0; terms--)
            text += "+(" + number() + ")*" + variable[rnd.below(3)] + "^" + std::to_string(1 + rnd.below(12));
        return text + ")";
    }
    /* The text that is shown of p, typed in again, gives p. */
    void check() {
        std::string typed = factor() + "*" + factor() + "^" + std::to_string(1 + rnd.below(3));
        this->run("p := " + typed);
        std::string shown = this->value_of("p");
        std::string zero = this->value_of("p - (" + shown + ")");
        ASSERT_EQ(zero, "0") << typed << "\n" << shown;
    }
    void check_styles() {
        for (int i = 0; i < times(60) && !this->HasFailure(); i++) {
            monomial_list = rnd.below(2);
            dispcutoff = rnd.one_in(2) ? 76 : 12 + rnd.below(40);
            check();
        }
        dispcutoff = 1000000; /* a line end has no mark in the compact style */
        uglyprint = 1;
        for (int i = 0; i < times(20) && !this->HasFailure(); i++) {
            monomial_list = rnd.below(2);
            check();
        }
    }
};
using exact_prompt = at_the_prompt<fresh_exact_system>;
using float_prompt = at_the_prompt<fresh_system>;

TEST_F(exact_prompt, a_polynomial_that_was_shown_can_be_typed_in_again) { check_styles(); }

TEST_F(float_prompt, a_polynomial_that_was_shown_can_be_typed_in_again) { check_styles(); }

TEST_F(exact_prompt, long_coefficients_can_be_typed_in_again) {
    for (const char *margin : {"&_d\n20", "&_d\n76"}) {
        run(margin);
        run("p := (7x^2 + 3y - 11)^60");
        std::string shown = value_of("p");
        EXPECT_GT(shown.size(), 10000u);
        EXPECT_EQ(value_of("p - (" + shown + ")"), "0");
    }
}
