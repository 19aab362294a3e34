#include "kdxcommon/logging/error_traits.h"

#include "kdxcommon/inhouse/jxutils/jx_exception.h"

namespace kdx {
namespace {

struct DbOutcome {
  std::uint32_t code;
  std::uint32_t id;
};

constexpr DbOutcome kDbOutcomes[] = {
    {100, kDbErrorRowNotFound},   {101, kDbErrorDuplicateRow},
    {1004, kDbErrorDuplicateRow}, {1016, kDbErrorConstraintViolation},
    {1011, kDbErrorLockTimeout},  {1025, kDbErrorDeadLock},
    {1012, kDbErrorDeadLock},
};

std::uint32_t idOfDbCode(std::uint32_t code) {
  for (const DbOutcome& outcome : kDbOutcomes) {
    if (outcome.code == code) return outcome.id;
  }
  return kDbErrorOther;
}

// Bit 17 determines which bits of an id are its family.
std::uint32_t familyOf(std::uint32_t id) {
  constexpr std::uint32_t kWideFamily = 0x20000;
  return (id & kWideFamily) == 0 ? id >> 24 : id >> 18 & 0xFFFF;
}

}  // namespace

KDXErrorTraits::KDXErrorTraits() : KDXErrorTraits(0, ZQLE_INFORMATIONAL) {}

KDXErrorTraits::KDXErrorTraits(std::uint32_t id, ZQLE_SeverityLevel severity) : zqError_(id, severity) {
  init();
}

KDXErrorTraits::KDXErrorTraits(const KDXErrorTraits& other) = default;
KDXErrorTraits& KDXErrorTraits::operator=(const KDXErrorTraits& other) = default;
KDXErrorTraits::~KDXErrorTraits() = default;

void KDXErrorTraits::init() {
  setSeverityLevels(ZQLE_INFORMATIONAL, ZQLE_MINOR, ZQLE_MAJOR, ZQLE_CRITICAL);
}

bool KDXErrorTraits::isInformational() const {
  return zqError_.isInformational();
}
bool KDXErrorTraits::isMinor() const {
  return zqError_.isMinor();
}
bool KDXErrorTraits::isMajor() const {
  return zqError_.isMajor();
}
bool KDXErrorTraits::isCritical() const {
  return zqError_.isCritical();
}
bool KDXErrorTraits::isOSError() const {
  return zqError_.isOSError();
}
std::uint32_t KDXErrorTraits::errorID() const {
  return lastError().zqError_.number();
}
int KDXErrorTraits::severity() const {
  return zqError_.severity();
}

void KDXErrorTraits::setInformational(std::uint32_t id) {
  KDXErrorTraits::clear();
  zqError_.setInformational(id);
}

void KDXErrorTraits::setMinor(std::uint32_t id) {
  KDXErrorTraits::clear();
  zqError_.setMinor(id);
}

void KDXErrorTraits::setOSMinor(std::uint32_t id) {
  KDXErrorTraits::setMinor(id);
}

void KDXErrorTraits::setMajor(std::uint32_t id) {
  KDXErrorTraits::clear();
  zqError_.setMajor(id);
}

void KDXErrorTraits::setOSMajor(std::uint32_t id) {
  KDXErrorTraits::setMajor(id);
}

void KDXErrorTraits::setCritical(std::uint32_t id) {
  KDXErrorTraits::clear();
  zqError_.setCritical(id);
}

void KDXErrorTraits::setOSCritical(std::uint32_t id) {
  KDXErrorTraits::setCritical(id);
}

void KDXErrorTraits::setTextError(std::uint32_t id, const string& text, const string& where, int severity) {
  KDXErrorTraits::clear();
  switch (severity) {
    case ZQLE_INFORMATIONAL:
      setInformational(id);
      break;
    case ZQLE_MINOR:
      setMinor(id);
      break;
    case ZQLE_MAJOR:
      setMajor(id);
      break;
    case ZQLE_CRITICAL:
      setCritical(id);
      break;
    default:
      throw JxException("Unsupported severity!", where);
  }
  textMessage_ = text;
}

string KDXErrorTraits::textMessage() const {
  return textMessage_;
}

void KDXErrorTraits::setTypedError(std::uint32_t id, int severity) {
  clear();
  zqError_ = ZQLastError(id, static_cast<ZQLE_SeverityLevel>(severity));
}

void KDXErrorTraits::setInvalidArgumentError(int /*severity*/) {
  setTypedError(kErrorInvalidArgument, ZQLE_MAJOR);
}

void KDXErrorTraits::setInsufficientMemoryError(int severity) {
  setTypedError(kErrorInsufficientMemory, severity);
}

void KDXErrorTraits::setFileNotFoundError(const string& fileName, int severity) {
  setTypedError(kErrorFileNotFound, severity);
  zqError_.addArgument(fileName.c_str());
}

void KDXErrorTraits::clear() {
  zqError_.clear();
  textMessage_.clear();
}

void KDXErrorTraits::setAPICallError(const string& first, const string& second, int severity) {
  setTypedError(kErrorInterfaceCall, severity);
  zqError_.addArgument(first.c_str());
  zqError_.addArgument(second.c_str());
}

const KDXErrorTraits& KDXErrorTraits::lastError() const {
  return *this;
}
KDXErrorTraits& KDXErrorTraits::setLastError() {
  return *this;
}

void KDXErrorTraits::setDbError(std::uint32_t code, int severity, const string& where) {
  if (code == 0) return setTextError(0, string(), where, ZQLE_INFORMATIONAL);
  const std::uint32_t id = idOfDbCode(code);
  setTextError(id, string(), where, severity);
  if (id == kDbErrorOther) zqError_.addArgument(code);
}

bool KDXErrorTraits::isDbError() const {
  return familyOf(errorID()) == familyOf(kDbErrorOther);
}

}  // namespace kdx
