#include "support/rand_poly.h"

#include "numbers/number_decimal.h"
#include "poly/variables.h"
#include "quoly/quoly.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <set>

namespace tolvek {

/* ---- rings ---- */

const std::vector<std::string> test_rings = {"chain", "float", "word", "2", "3", "6", "46337", "2147483629"};

test_ring::test_ring(const std::string &name) {
    flotemode = lintmode = modularmode = 0;
    modulus = -1;
    if (name == "float") {
        flotemode = lintmode = 1;
    } else if (name == "word") {
        lintmode = 1;
    } else if (name != "chain") {
        lintmode = modularmode = 1;
        modulus = static_cast<int32_t>(std::stol(name));
    }
}

/* ---- flat and nested ---- */

bool higher_term::operator()(const std::vector<int32_t> &a, const std::vector<int32_t> &b) const {
    for (std::size_t i = 0; i < std::max(a.size(), b.size()); i++) {
        int32_t ea = i < a.size() ? a[i] : 0, eb = i < b.size() ? b[i] : 0;
        if (ea != eb) return ea > eb;
    }
    return false;
}

static void flatten(const polynode *p, std::vector<int32_t> &exponents, flat_poly &terms) {
    for (; p; p = p->next) {
        if (p->is_number) {
            std::vector<int32_t> key = exponents;
            while (!key.empty() && key.back() == 0) key.pop_back();
            if (num_sign(p->num)) terms.insert_or_assign(key, coef(p->num));
            continue;
        }
        exponents.push_back(p->expo);
        flatten(p->poly, exponents, terms);
        exponents.pop_back();
    }
}

flat_poly flat(const polynode *p) {
    flat_poly terms;
    std::vector<int32_t> exponents;
    flatten(p, exponents, terms);
    return terms;
}

using flat_list = std::vector<std::pair<std::vector<int32_t>, const coef *>>;

static polynode *number_term_of(const coef &c) {
    polynode *t = new_number_term();
    num_assign(&c.x, t->num);
    return t;
}

/* The terms, none of them 0, at a level: first by its exponent. */
static polynode *nest(const flat_list &terms, std::size_t level) {
    if (terms.size() == 1 && terms[0].first.size() <= level) return number_term_of(*terms[0].second);
    std::map<int32_t, flat_list, std::greater<>> by_exponent;
    for (const auto &t : terms) by_exponent[t.first.size() > level ? t.first[level] : 0].push_back(t);
    polynode *first = nullptr, **end = &first;
    for (const auto &[expo, list] : by_exponent) {
        polynode *c = nest(list, level + 1);
        polynode *t = c;
        if (expo != 0 || !is_constant(c)) {
            t = newpoly();
            t->is_number = 0;
            t->poly = c;
        }
        t->expo = expo;
        t->next = nullptr;
        *end = t;
        end = &t->next;
    }
    return first;
}

polynode *nested(const flat_poly &terms) {
    flat_list list;
    for (const auto &[key, c] : terms)
        if (!c.is_zero()) list.emplace_back(key, &c);
    return list.empty() ? number_term_of(coef(0)) : nest(list, 0);
}

flat_poly flat_sum(const flat_poly &a, const flat_poly &b, bool minus) {
    flat_poly sum = a;
    for (const auto &[key, c] : b) {
        coef &place = sum.try_emplace(key, 0).first->second;
        (minus ? sub : num_add)(&place.x, &c.x, &place.x);
        if (place.is_zero()) sum.erase(key);
    }
    return sum;
}

flat_poly flat_product(const flat_poly &a, const flat_poly &b) {
    flat_poly product;
    for (const auto &[ka, ca] : a)
        for (const auto &[kb, cb] : b) {
            std::vector<int32_t> key(std::max(ka.size(), kb.size()));
            for (std::size_t i = 0; i < key.size(); i++)
                key[i] = (i < ka.size() ? ka[i] : 0) + (i < kb.size() ? kb[i] : 0);
            while (!key.empty() && key.back() == 0) key.pop_back();
            quoly_handle x, y;
            quoly_set(0, x.slot());
            quoly_set(0, y.slot());
            num_assign(&ca.x, x->numb);
            num_assign(&cb.x, y->numb);
            fast_quoly_mult(x.slot(), y.get());
            coef &place = product.try_emplace(key, 0).first->second;
            num_add(&place.x, x->numb, &place.x);
            if (place.is_zero()) product.erase(key);
        }
    return product;
}

/* ---- text ---- */

namespace {
struct poly_reader {
    const char *at;

    void skip() {
        while (*at == ' ') at++;
    }
    std::string figures() {
        std::string text;
        while (std::isdigit(static_cast<unsigned char>(*at))) text += *at++;
        return text;
    }
    coef integer() {
        std::string text = figures();
        number chain{};
        coef c;
        if (flotemode || lintmode) {
            long long v = std::stoll(text);
            if (modularmode) v %= modulus;
            setvalue(static_cast<int32_t>(v), &c.x);
            if (flotemode) c.x.flote_val = static_cast<long double>(v);
        } else {
            number_from_figures(text.data(), text.size(), &chain);
            num_assign(&chain, &c.x);
        }
        special_free(&chain);
        return c;
    }
    int32_t exponent() {
        if (*at != '^') return 1;
        bool negative = *++at == '-';
        if (negative) at++;
        int32_t e = static_cast<int32_t>(std::stol(figures()));
        return negative ? -e : e;
    }
    flat_poly term() {
        flat_poly product;
        product.insert({{}, coef(1)});
        for (bool more = true; more;) {
            skip();
            flat_poly factor;
            if (const char *v = *at ? std::strchr(test_variables, *at) : nullptr) {
                at++;
                std::vector<int32_t> key(static_cast<std::size_t>(v - test_variables) + 1);
                key.back() = exponent();
                if (key.back() == 0) key.clear();
                factor.insert({key, coef(1)});
            } else {
                factor.insert({{}, integer()});
            }
            product = flat_product(product, factor);
            skip();
            more = *at == '*';
            if (more) at++;
        }
        return product;
    }
    flat_poly sum() {
        flat_poly total;
        skip();
        bool minus = *at == '-';
        if (minus) at++;
        for (;;) {
            total = flat_sum(total, term(), minus);
            if (*at == 0) return total;
            minus = *at++ == '-';
        }
    }
};
} // namespace

polynode *poly_of(const std::string &text) { return nested(poly_reader{text.c_str()}.sum()); }

static std::string number_text(const number *x) {
    char text[64];
    if (flotemode) {
        std::snprintf(text, sizeof text, "%.21Lg", x->flote_val);
        return text;
    }
    if (lintmode) return std::to_string(x->lint_val);
    return figures_of_display(x);
}

static std::string term_text(const std::vector<int32_t> &key, const coef &c) {
    std::string number = number_text(&c.x), powers;
    for (std::size_t i = 0; i < key.size(); i++) {
        if (key[i] == 0) continue;
        if (!powers.empty()) powers += '*';
        powers += test_variables[i];
        if (key[i] != 1) powers += "^" + std::to_string(key[i]);
    }
    if (powers.empty()) return number;
    if (number == "1") return powers;
    if (number == "-1") return "-" + powers;
    return number + "*" + powers;
}

std::string text_of(const polynode *p) {
    if (!p) return "null";
    std::string text;
    for (const auto &[key, c] : flat(p)) {
        std::string term = term_text(key, c);
        if (text.empty())
            text = term;
        else
            text += term[0] == '-' ? " - " + term.substr(1) : " + " + term;
    }
    return text.empty() ? "0" : text;
}

std::string text_of(const quolynode *q) {
    if (!q) return "null";
    if (q->is_num) return number_text(q->numb);
    return q->den ? "(" + text_of(q->num) + ")/(" + text_of(q->den) + ")" : text_of(q->num);
}

/* ---- random polynomials ---- */

void rand_ring_number(test_random &rnd, int digits, number *x) {
    static const int32_t usual[] = {0, 1, -1, 2};
    if (!flotemode && !lintmode) {
        if (rnd.one_in(2))
            setvalue(usual[rnd.below(4)], x);
        else
            rand_number(rnd, digits, x);
        return;
    }
    if (modularmode) {
        uint32_t m = static_cast<uint32_t>(modulus);
        uint32_t residue =
            rnd.one_in(3) ? static_cast<uint32_t>(usual[rnd.below(4)] + modulus) % m : static_cast<uint32_t>(rnd()) % m;
        x->lint_val = static_cast<int32_t>(residue);
    } else if (flotemode) {
        x->flote_val = rnd.one_in(3) ? usual[rnd.below(4)] : (rnd.below(2001) - 1000) / 2.0L;
    } else {
        x->lint_val = rnd.one_in(3) ? usual[rnd.below(4)] : static_cast<int32_t>(static_cast<uint32_t>(rnd()));
    }
}

static polynode *rand_list(test_random &rnd, const poly_shape &s, int level);

static polynode *rand_constant(test_random &rnd, const poly_shape &s) {
    polynode *t = new_number_term();
    rand_ring_number(rnd, s.digits, t->num);
    return t;
}

/* Exponents in descending order: one after the other, or with gaps, or a few. */
static std::vector<int32_t> rand_exponents(test_random &rnd, const poly_shape &s) {
    int least = s.laurent && !rnd.one_in(3) ? -s.degree : 0;
    std::set<int32_t> chosen;
    int count = rnd.one_in(4) ? 1 : 1 + rnd.below(s.terms);
    if (rnd.one_in(3)) {
        int low = least + rnd.below(s.degree + 1);
        for (int e = low; e < low + count; e++) chosen.insert(e);
    } else {
        for (int i = 0; i < count; i++) chosen.insert(least + rnd.below(s.degree - least + 1));
    }
    return {chosen.rbegin(), chosen.rend()};
}

/* Null for 0. */
static polynode *rand_list(test_random &rnd, const poly_shape &s, int level) {
    if (level > s.variables || rnd.one_in(6)) {
        polynode *c = rand_constant(rnd, s);
        if (poly_iszero(c)) free_poly(&c);
        return c;
    }
    polynode *first = nullptr, **end = &first;
    std::vector<int32_t> exponents = rand_exponents(rnd, s);
    if (rnd.one_in(5)) exponents = {0}; /* the level is skipped */
    for (int32_t e : exponents) {
        polynode *c = rand_list(rnd, s, level + 1);
        if (!c) continue;
        polynode *t = nullptr;
        make_monomial(&t, e, c);
        *end = t;
        end = &t->next;
    }
    return first;
}

polynode *rand_poly(test_random &rnd, const poly_shape &shape) {
    polynode *p = rand_list(rnd, shape, 1);
    if (!p) poly_set(0, &p);
    return p;
}

polynode *rand_nonzero_poly(test_random &rnd, const poly_shape &shape) {
    for (;;) {
        polynode *p = rand_poly(rnd, shape);
        if (!poly_iszero(p)) return p;
        free_poly(&p);
    }
}

poly_shape rand_shape(test_random &rnd, bool with_laurent) {
    poly_shape s;
    s.variables = 1 + rnd.below(6);
    s.terms = s.variables == 1 ? 1 + rnd.below(60) : s.variables < 4 ? 1 + rnd.below(8) : 1 + rnd.below(3);
    s.degree = s.terms + rnd.below(rnd.one_in(2) ? 3 : 1000);
    s.digits = 1 + rnd.below(5);
    s.laurent = with_laurent && rnd.one_in(2);
    return s;
}

/* ---- the fixture ---- */

void poly_test::SetUp() {
    open_value_stashes();
    make_quoly_constants(); /* which stay */
    numbers_test::SetUp();
    forget_poly_variables();
    laurent = 0;
    field_depth = 0;
    for (const char *v = test_variables; *v; v++) {
        pt *record = newpt();
        record->pt_name[0] = *v;
        insert_variable(record, number_polys + 1);
    }
    before = count_records_in_use();
}

void poly_test::TearDown() {
    laurent = 0;
    field_depth = 0;
    EXPECT_EQ(count_records_in_use().polynodes, before.polynodes) << "nodes lost";
    EXPECT_EQ(count_records_in_use().quolynodes, before.quolynodes) << "quolys lost";
    forget_poly_variables();
    numbers_test::TearDown();
}

} // namespace tolvek
