/* The Lagrange basis polynomials as they stand in the start-up data. */
#include "poly/canonical.h"
#include "quoly/calculus.h"
#include "quoly/quoly.h"
#include "support/fresh_system.h"
#include "top/start_tables.h"

namespace tolvek {

struct direct_read : fresh_exact_system {
    void SetUp() override {
        fresh_exact_system::SetUp();
        run("&(J = x)");
    }
};

/* 1 at its own point and 0 at the others, by the definition of the basis. */
TEST_F(direct_read, each_basis_polynomial_is_1_at_its_point_and_0_at_the_others) {
    for (int r = 1; r <= 9; r++) {
        for (int c = 0; c <= r; c++) {
            quoly_handle q;
            ASSERT_TRUE(direct_quoly_read(q.slot())) << r << " " << c;
            EXPECT_EQ(quoly_rule_broken(q.get()), 0);
            for (int point = 1; point <= r + 1; point++) {
                quoly_handle at, value;
                quoly_set(point, at.slot());
                quoly_assign(q.get(), value.slot());
                const quolynode *points[] = {at.get()};
                get_evalquoly(value.slot(), points, 1);
                EXPECT_EQ(quoly_to_int(value.get()), point == c + 1 ? 1 : 0) << r << " " << c << " " << point;
            }
        }
    }
}

} // namespace tolvek
