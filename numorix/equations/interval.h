// CNuInterval: a parameter range [lower, upper] with lower strictly below upper. The open flags
// are stored and reported, but membership and overlap always treat the interval as closed: an
// interval touching another at one point overlaps it.
#ifndef NUMORIX_EQUATIONS_INTERVAL_H
#define NUMORIX_EQUATIONS_INTERVAL_H

#include "numorix/foundation/object.h"

namespace numorix {

class CNuInterval : public CNuAlgebra {
  public:
    CNuInterval(double dLower, double dUpper, int nLeftOpen, int nRightOpen);
    CNuInterval(const CNuInterval& other);
    CNuInterval& operator=(const CNuInterval& other);
    ~CNuInterval() override;

    int IsLeftOpen() const { return m_nLeftOpen; }
    int IsRightOpen() const { return m_nRightOpen; }
    void GetBounds(double* pdLower, double* pdUpper) const;

    int IsIn(double dValue) const;
    int IsOverlapping(const CNuInterval& other) const;

  private:
    int m_nLeftOpen;
    int m_nRightOpen;
    double m_dLower;
    double m_dUpper;
};

}  // namespace numorix

#endif  // NUMORIX_EQUATIONS_INTERVAL_H
