#include "numorix/equations/interval.h"

#include "numorix/foundation/exception.h"

namespace numorix {

CNuInterval::CNuInterval(double dLower, double dUpper, int nLeftOpen, int nRightOpen)
    : m_nLeftOpen(nLeftOpen), m_nRightOpen(nRightOpen), m_dLower(dLower), m_dUpper(dUpper) {
    m_eObjectType = eTypeInterval;
    if (!(dLower < dUpper)) throw CNuConstructionException(11, "CNuInterval");
}

CNuInterval::CNuInterval(const CNuInterval& other) = default;
CNuInterval& CNuInterval::operator=(const CNuInterval& other) = default;
CNuInterval::~CNuInterval() = default;

void CNuInterval::GetBounds(double* pdLower, double* pdUpper) const {
    if (pdLower != nullptr) *pdLower = m_dLower;
    if (pdUpper != nullptr) *pdUpper = m_dUpper;
}

int CNuInterval::IsIn(double dValue) const {
    return (m_dLower <= dValue && dValue <= m_dUpper) ? 1 : 0;
}

// Closed bounds throughout: either end of one interval inside the other.
int CNuInterval::IsOverlapping(const CNuInterval& other) const {
    if (IsIn(other.m_dLower)) return 1;
    if (IsIn(other.m_dUpper)) return 1;
    return (other.IsIn(m_dLower) || other.IsIn(m_dUpper)) ? 1 : 0;
}

}  // namespace numorix
