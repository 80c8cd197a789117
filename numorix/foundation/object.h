// Object model: the root class CNuObject with its 32-bit type tag, the family bases of the
// algebra, numerical analysis and trigonometry classes, and the library's boolean and status
// enumerations.
//
// Every concrete mathematical class writes its tag in its constructors, so that code holding a
// base reference (a curve, a surface) can dispatch on the kind of object it holds. The tag values
// are fixed: 0, 27, 32 and 37 are unused, and abstract bases write no tag.
#ifndef NUMORIX_FOUNDATION_OBJECT_H
#define NUMORIX_FOUNDATION_OBJECT_H

#include <cstdint>

namespace numorix {

// The library's boolean. Predicates return it and take it in place of bool.
enum ENuBoolean : std::int32_t { eNuFalse = 0, eNuTrue = 1 };

// Result of the operations that report failure without throwing.
enum ENuStatus : std::int32_t { eNuStatusFailed = 0, eNuStatusOk = 1 };

class CNuObject {
  public:
    enum ENuObjectType : std::int32_t {
        eTypeInterval = 1,
        eTypeMatrix = 2,
        eTypeComplex = 3,
        eTypeComplexPolar = 4,
        eTypeComplexVector = 5,
        eTypeComplexMatrix = 6,
        eTypePolynomial = 7,
        eTypeChebyshevPolynomial = 8,
        eTypeChebyshevPolynomialExpression = 9,
        eTypeAlgEqu = 10,
        eTypeLinearEquSys = 11,
        eTypeCosineCurve = 12,
        eTypeSineCurve = 13,
        eTypeTriag = 14,
        eTypeTriagEqu = 15,
        eTypeTriagPolynomial = 16,
        eTypePoint = 17,
        eTypeVector = 18,
        eTypeCartesianCoord = 19,
        eTypeLine = 20,
        eTypePlane = 21,
        eTypeCircle = 22,
        eTypeEllipse = 23,
        eTypeHyperbola = 24,
        eTypeParabola = 25,
        eTypePolyline = 26,
        eTypePCurve = 28,
        eTypeLineSegment = 29,
        eTypeCircularArc = 30,
        eTypeCompositeCurve = 31,
        eTypeCylSurf = 33,
        eTypeConSurf = 34,
        eTypeSphSurf = 35,
        eTypeTorSurf = 36,
        eTypeIntegral = 38,
        eTypeIntegral2D = 39,
        eTypeIntegral3D = 40,
        eTypeInterpolation = 41,
        eTypeInterpolation2D = 42
    };

    virtual ~CNuObject();
    CNuObject(const CNuObject&) = default;
    CNuObject& operator=(const CNuObject&) = default;

    ENuObjectType GetType() const { return m_eObjectType; }

  protected:
    // An object whose class writes no tag reads as 0, a value no class uses.
    CNuObject() = default;

    ENuObjectType m_eObjectType = static_cast<ENuObjectType>(0);
};

// Family bases. They add no data and no virtual operation.
class CNuAlgebra : public CNuObject {
  public:
    CNuAlgebra(const CNuAlgebra&) = default;
    CNuAlgebra& operator=(const CNuAlgebra&) = default;

  protected:
    CNuAlgebra() = default;
};

class CNuNumericalAnalysis : public CNuObject {
  public:
    CNuNumericalAnalysis(const CNuNumericalAnalysis&) = default;
    CNuNumericalAnalysis& operator=(const CNuNumericalAnalysis&) = default;

  protected:
    CNuNumericalAnalysis() = default;
};

class CNuTrigonometry : public CNuObject {
  public:
    CNuTrigonometry(const CNuTrigonometry&) = default;
    CNuTrigonometry& operator=(const CNuTrigonometry&) = default;

  protected:
    CNuTrigonometry() = default;
};

}  // namespace numorix

#endif  // NUMORIX_FOUNDATION_OBJECT_H
