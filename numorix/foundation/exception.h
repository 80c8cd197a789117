// Exception family. Every failure of the library leaves as one of four concrete exceptions,
// thrown by value. Each carries a stored cause code partitioned by class:
//
//   CNuConstructionException   stored 1..99     GetCause() = stored
//   CNuOperationException      stored 101..199  GetCause() = stored - 100 (0 stays 0)
//   CNuBestfitException        stored 201..299  GetCause() = stored - 200 (0 stays 0)
//   CNuMemoryException         stored 301       GetCause() = 301
//
// together with two integers, two reals, a parameter or activity name (at most 99 characters) and
// a location (at most 49 characters). GetErrorMessage composes a header chosen by the stored cause,
// an indent of four blanks and the text of the cause's row in the message table.
#ifndef NUMORIX_FOUNDATION_EXCEPTION_H
#define NUMORIX_FOUNDATION_EXCEPTION_H

#include <cstdint>

namespace numorix {

class CNuException {
  public:
    CNuException(const CNuException& other);
    CNuException& operator=(const CNuException& other);
    virtual ~CNuException();

    // The cause as the caller sees it: the stored code less the class's offset.
    virtual int GetCause() const = 0;

    // Writes the composed message into pszBuffer, which holds nLength characters. A text of T
    // characters is cut to nLength - 1 characters and terminated when nLength < T; otherwise it is
    // copied with nLength - 1 as the bound of the copy, so only a buffer of at least T + 2
    // characters is sure to receive the terminating zero.
    void GetErrorMessage(int nLength, char* pszBuffer) const;

    // Sets the library-wide assertion flag. Its only reader is CNuIntArray::Truncate.
    static void SetAssert();
    static int IsAssertEnabled();

    std::int32_t m_nCause;   // stored cause; 0 means no failure
    std::int32_t m_nValue1;  // first integer detail
    std::int32_t m_nValue2;  // second integer detail
    double m_dValue1;        // first real detail (operation failures only)
    double m_dValue2;        // second real detail (operation failures only)
    char m_szName[100];      // what failed: a parameter noun or an activity
    char m_szLocation[50];   // where: a class name or a function text

    static std::int32_t m_nAssert;

  protected:
    explicit CNuException(int nCause = 0);

    // Copy a caller's string into a field, cut to the field's width. A null string is skipped.
    void SetName(const char* pszName);
    void SetLocation(const char* pszLocation);
};

class CNuConstructionException : public CNuException {
  public:
    explicit CNuConstructionException(int nCause = 0, const char* pszLocation = nullptr,
                                      const char* pszName = nullptr, int nValue1 = 0,
                                      int nValue2 = 0);
    CNuConstructionException(const CNuConstructionException&) = default;
    CNuConstructionException& operator=(const CNuConstructionException&) = default;
    int GetCause() const override;
};

class CNuOperationException : public CNuException {
  public:
    explicit CNuOperationException(int nCause = 0, const char* pszName = nullptr,
                                   const char* pszLocation = nullptr, int nValue1 = 0,
                                   int nValue2 = 0, double dValue1 = 0.0, double dValue2 = 0.0);
    CNuOperationException(const CNuOperationException&) = default;
    CNuOperationException& operator=(const CNuOperationException&) = default;
    int GetCause() const override;
    double GetValue() const { return m_dValue1; }
};

class CNuBestfitException : public CNuException {
  public:
    explicit CNuBestfitException(int nCause = 0, const char* pszLocation = nullptr,
                                 int nValue1 = 0);
    CNuBestfitException(const CNuBestfitException&) = default;
    CNuBestfitException& operator=(const CNuBestfitException&) = default;
    int GetCause() const override;
    // The number of points the failed fit required.
    int GetSize() const { return m_nValue1; }
};

class CNuMemoryException : public CNuException {
  public:
    explicit CNuMemoryException(const char* pszLocation = nullptr);
    CNuMemoryException(const CNuMemoryException&) = default;
    CNuMemoryException& operator=(const CNuMemoryException&) = default;
    int GetCause() const override;
};

}  // namespace numorix

#endif  // NUMORIX_FOUNDATION_EXCEPTION_H
