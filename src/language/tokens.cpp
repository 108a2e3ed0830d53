#include "language/tokens.h"

#include <cstring>

namespace tolvek {

const token_record semicolon{";", hash_unknown};
const token_record zero{"0", hash_unknown};
const token_record multsign{"*", hash_unknown};
const token_record quotsign{"/", hash_unknown};
const token_record minussign{"-", hash_unknown};
const token_record plussign{"+", hash_unknown};
const token_record comma{",", hash_unknown};
const token_record esign{"e", hash_unknown};
const token_record quotesign{"'", hash_unknown};
const token_record bulletsign{"#", hash_unknown};
const token_record arr_arrsign{"%", hash_unknown};
const token_record diag_sign{"Diag", hash_unknown};
const token_record sys_func_tok{"<F", hash_unknown};
const token_record empty{"", hash_unknown};
const token_record concatsign{"_", hash_unknown};
const token_record logsign{"_", hash_unknown};
const token_record sqrtsign{"Sqrt", hash_unknown};
const token_record expsign{"^", hash_unknown};
const token_record greatintsign{"$", hash_unknown};
const token_record factsign{"!", hash_unknown};
const token_record polysign{"J", hash_unknown};
const token_record modoutsign{"P", hash_unknown};
const token_record end_of_list{"\xC2\xA5", hash_unknown};

bool token_equals(const token_record &t, const char *text) { return std::strcmp(t.text, text) == 0; }

void set_token(token_record &t, const char *text) {
    t = {};
    std::strncpy(t.text, text, token_bytes - 1);
    t.hash_slot = hash_unknown;
}

} // namespace tolvek
