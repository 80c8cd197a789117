// The object model: type tags, family bases and the library enumerations.
#include <type_traits>

#include "nu_test.h"
#include "numorix/foundation/object.h"
#include "numorix/geometry/geometry.h"

namespace numorix {
namespace {

struct Tagged : CNuGeometry {
    Tagged() { m_eObjectType = eTypePoint; }
};

struct Untagged : CNuTrigonometry {};

TEST(ObjectModel, TagsAreWrittenByConcreteClassesAndCopiedWithThem) {
    Tagged t;
    EXPECT_EQ(t.GetType(), CNuObject::eTypePoint);
    Tagged copy(t);
    EXPECT_EQ(copy.GetType(), CNuObject::eTypePoint);
    Untagged u;
    EXPECT_EQ(static_cast<int>(u.GetType()), 0);  // no class uses 0
}

TEST(ObjectModel, TagValuesAndEnumerationsHaveTheirFixedWidthsAndNumbers) {
    static_assert(sizeof(CNuObject::ENuObjectType) == 4, "32-bit tag");
    static_assert(sizeof(ENuBoolean) == 4 && sizeof(ENuStatus) == 4, "32-bit enumerations");
    EXPECT_EQ(eNuFalse, 0);
    EXPECT_EQ(eNuTrue, 1);
    EXPECT_EQ(eNuStatusFailed, 0);
    EXPECT_EQ(eNuStatusOk, 1);
    EXPECT_EQ(CNuObject::eTypeInterval, 1);
    EXPECT_EQ(CNuObject::eTypePolyline, 26);
    EXPECT_EQ(CNuObject::eTypePCurve, 28);
    EXPECT_EQ(CNuObject::eTypeCompositeCurve, 31);
    EXPECT_EQ(CNuObject::eTypeCylSurf, 33);
    EXPECT_EQ(CNuObject::eTypeTorSurf, 36);
    EXPECT_EQ(CNuObject::eTypeIntegral, 38);
    EXPECT_EQ(CNuObject::eTypeInterpolation2D, 42);
}

TEST(ObjectModel, FamilyBasesCannotBeBuiltAloneButCopyPublicly) {
    static_assert(!std::is_default_constructible_v<CNuAlgebra>, "protected constructor");
    static_assert(!std::is_default_constructible_v<CNuGeometry>, "protected constructor");
    static_assert(!std::is_default_constructible_v<CNuNumericalAnalysis>, "protected");
    static_assert(!std::is_default_constructible_v<CNuTrigonometry>, "protected constructor");
    static_assert(std::has_virtual_destructor_v<CNuObject>, "polymorphic root");
    static_assert(std::is_base_of_v<CNuObject, CNuGeometry>, "geometry family");
    SUCCEED();
}

}  // namespace
}  // namespace numorix
