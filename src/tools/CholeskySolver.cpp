#include "tools/CholeskySolver.h"

#include <cmath>
#include <cstdint>

namespace korvane::tools {

bool CholeskySolver::factorize(ValueMatrix& a) {
    const std::uint64_t n = a.rows();
    for (std::uint64_t j = 0; j < n; ++j) {
        double* rowJ = a.row(j);
        double pivot = rowJ[j];
        for (std::uint64_t k = 0; k < j; ++k) pivot -= rowJ[k] * rowJ[k];
        if (!(pivot > 0.0)) return false;  // also refuses NaN
        const double diagonal = std::sqrt(pivot);
        rowJ[j] = diagonal;
        for (std::uint64_t i = j + 1; i < n; ++i) {
            double* rowI = a.row(i);
            double sum = rowI[j];
            for (std::uint64_t k = 0; k < j; ++k) sum -= rowI[k] * rowJ[k];
            rowI[j] = sum / diagonal;
        }
    }
    return true;
}

void CholeskySolver::solve(const ValueMatrix& factors, double* b) {
    const std::uint64_t n = factors.rows();
    for (std::uint64_t i = 0; i < n; ++i) {  // L·y = b
        const double* row = factors.row(i);
        double sum = b[i];
        for (std::uint64_t k = 0; k < i; ++k) sum -= row[k] * b[k];
        b[i] = sum / row[i];
    }
    for (std::uint64_t i = n; i-- > 0;) {  // Lᵀ·x = y
        double sum = b[i];
        for (std::uint64_t k = i + 1; k < n; ++k) sum -= factors(k, i) * b[k];
        b[i] = sum / factors(i, i);
    }
}

}  // namespace korvane::tools
