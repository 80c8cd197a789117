// The object model: type tags travel with copies, and the numbers of the tags and enumerations
// are fixed, since callers store them.
#include "nu_test.h"
#include "numorix/foundation/object.h"
#include "numorix/geometry/geometry.h"

namespace numorix {
namespace {

struct Tagged : CNuGeometry {
    Tagged() { m_eObjectType = eTypePoint; }
};

struct Untagged : CNuTrigonometry {};

TEST(ObjectModel, TagsAreCopiedWithTheObjectAndKeepTheirFixedNumbers) {
    Tagged t;
    EXPECT_EQ(Tagged(t).GetType(), CNuObject::eTypePoint);
    EXPECT_EQ(static_cast<int>(Untagged().GetType()), 0) << "no class uses 0";
    const int numbers[][2] = {
        {eNuFalse, 0},        {eNuTrue, 1},
        {eNuStatusFailed, 0}, {eNuStatusOk, 1},
        {CNuObject::eTypeInterval, 1},        {CNuObject::eTypePolyline, 26},
        {CNuObject::eTypePCurve, 28},         {CNuObject::eTypeCompositeCurve, 31},
        {CNuObject::eTypeCylSurf, 33},        {CNuObject::eTypeTorSurf, 36},
        {CNuObject::eTypeIntegral, 38},       {CNuObject::eTypeInterpolation2D, 42}};
    for (const auto& n : numbers)
        EXPECT_EQ(n[0], n[1]);
}

}  // namespace
}  // namespace numorix
