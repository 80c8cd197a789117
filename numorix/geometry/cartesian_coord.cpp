#include "numorix/geometry/cartesian_coord.h"

namespace numorix {

CNuCartesianCoord::CNuCartesianCoord()
    : m_origin(0.0, 0.0, 0.0), m_xAxis(1.0, 0.0, 0.0), m_zAxis(0.0, 0.0, 1.0) {
    m_eObjectType = eTypeCartesianCoord;
}

CNuCartesianCoord::CNuCartesianCoord(const CNuCartesianCoord& other) = default;
CNuCartesianCoord& CNuCartesianCoord::operator=(const CNuCartesianCoord& other) = default;
CNuCartesianCoord::~CNuCartesianCoord() = default;

void CNuCartesianCoord::GetData(CNuPoint* pOrigin, CNuVector* pXAxis, CNuVector* pZAxis) const {
    if (pOrigin != nullptr) *pOrigin = m_origin;
    if (pXAxis != nullptr) *pXAxis = m_xAxis;
    if (pZAxis != nullptr) *pZAxis = m_zAxis;
}

void CNuCartesianCoord::SetOrigin(const CNuPoint& origin) { m_origin = origin; }
void CNuCartesianCoord::SetLocalXaxis(const CNuVector& xAxis) { m_xAxis = xAxis; }
void CNuCartesianCoord::SetLocalZaxis(const CNuVector& zAxis) { m_zAxis = zAxis; }

void CNuCartesianCoord::SetData(const CNuPoint& origin, const CNuVector& xAxis,
                                const CNuVector& zAxis) {
    m_origin = origin;
    m_xAxis = xAxis;
    m_zAxis = zAxis;
}

}  // namespace numorix
