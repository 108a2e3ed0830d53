/* Reports that do not stop a computation, and internal errors. */
#include "gcd/gcd.h"
#include "top/driver.h"

#include <cstdlib>

namespace tolvek {

void out_err_mess(int n) {
    if (n == 17) say("After &, legal symbols are: v,f,F,r,R,d,D,C,B,I,X,L,K,c,W,@,_s,_t,_G\n");
    say(message_text(n));
    say("\n");
}

struct warning_text {
    int number;
    const char *format; /* %s is the symbol at fault */
};

static const warning_text warning_texts[] = {
    {0, " *** Loop counter in Content is negative.  Will reset.\n"},
    {1, " Specified factor for Det is unusable. Will ignore it.\n"},
    {2, " Specified degree is unreasonable. Will ignore it.\n"},
    {3, " Power is of use only over ground rings Z or Z/p.\n"},
    {4, " With even power, |power| must be 2^k, and modulus mod 4 must equal 3.\n"},
    {5, " With odd power, gcd(|power|, modulus-1) must be 1.\n"},
    {19, " *** Undefined variable: %s.  will use 0\n"},
    {22, " *** Trying to divide by 0, in variable: %s.  will set quotient to 0\n"},
    {90, " *** Can't do Det\n"},
};

static void other_warning(int n, const char *symbol) {
    if (n == 342) {
        out_err_mess(n);
        say(" If necessary, do a panic stop as soon as possible. Then if\n");
        sayf(" necessary, delete the parameter %s.\n", symbol);
    } else {
        sayf(" *** Can't do %s\n", symbol);
        out_err_mess(n);
    }
}

void warning(int n, const char *symbol) {
    constexpr int counters_reset = 200001;
    say("\n *** Warning.\n");
    const char *format = nullptr;
    for (const warning_text &row : warning_texts)
        if (row.number == n) format = row.format;
    if (format)
        sayf(format, symbol);
    else
        other_warning(n, symbol);
    if (n == 0) c_cntcount = a_cntcount = d_cntcount = counters_reset;
    if (n <= 5) flush(&standard_output);
    say("\n");
}

void tolvek_error(const char *text, int flag) {
    tolvekerror(text);
    if (flag) error(-1, blank);
}

void tolvekerror(const char *text) {
    sayf("*** Tolvek error. %s\n", text);
    flush(&standard_output);
    if (starting_up) std::exit(1);
}

void mem_error() {
    if (gcdmass > 0) {
        say("\n*** Warning.  You are low on heap space.  Will try freeing the gcd stash.\n");
        flush(&standard_output);
        free_gcd_stash(stash_drop::everything);
        return;
    }
    say("\n*** Warning.  You are out of heap space.  Abort this computation.\n");
    flush(&standard_output);
    error(-1, blank);
}

} // namespace tolvek
