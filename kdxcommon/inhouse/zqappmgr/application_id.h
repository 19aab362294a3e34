// The application manager: ApplicationId identifies one subclient of one application and returns the records that the
// installation holds of both.
//
//   kdx::ApplicationId id(appIdPart1, appIdPart2);
//   kdx::Subclient* subclient = id.getSubclient(nullptr);
//   if (subclient) use(subclient->id());
//
// Every look-up reads the embedded site. A failed look-up returns null or a non-zero number and leaves its outputs
// unchanged. Thread safety: not safe for concurrent use of one object; different objects are independent. Throws only
// std::bad_alloc.

#ifndef KDXCOMMON_INHOUSE_ZQAPPMGR_APPLICATION_ID_H_
#define KDXCOMMON_INHOUSE_ZQAPPMGR_APPLICATION_ID_H_

#include <cstdint>
#include <memory>

#include "kdxcommon/base/export.h"

namespace kdx {

/// The record of a subclient, as it was when it was looked up.
class KDX_EXPORT Subclient {
 public:
  /// The record with these values.
  Subclient(std::uint32_t id, std::uint32_t dataCollectionOptions)
      : id_(id), dataCollectionOptions_(dataCollectionOptions) {}
  virtual ~Subclient();

  /// The subclient's own id; 0 is none.
  virtual std::uint32_t id() const { return id_; }

  /// Sets `options` to the word of data collection option bits. Returns 0. The second argument is ignored.
  int getKDXDataCollectionOptions(std::uint32_t& options, void* reserved) const;

 private:
  std::uint32_t id_;
  std::uint32_t dataCollectionOptions_;
};

/// The record of an application's type, as it was when it was looked up.
class KDX_EXPORT ZQApplicationType {
 public:
  /// The record with these values.
  ZQApplicationType(int number, bool collectsData) : number_(number), collectsData_(collectsData) {}
  virtual ~ZQApplicationType();

  /// The application type's number.
  virtual int number() const { return number_; }

  /// Sets `enabled` to the type's data collection property. Returns 0. The second argument is ignored.
  int isKDXdataCollectionEnabled(bool& enabled, void* reserved) const;

 private:
  int number_;
  bool collectsData_;
};

/// One subclient of one application.
class KDX_EXPORT ApplicationId {
 public:
  /// Stores the two numbers; nothing is looked up.
  ApplicationId(std::uint32_t appIdPart1, std::uint32_t appIdPart2);
  ~ApplicationId();
  ApplicationId(const ApplicationId&) = delete;
  ApplicationId& operator=(const ApplicationId&) = delete;

  /// Sets `type` and returns 0, or returns non-zero and leaves `type` unchanged if the site doesn't know the
  /// application. The second argument is ignored, here and below.
  int getAppType(std::uint32_t& type, void* reserved) const;

  /// Returns the record, or null if the site doesn't have one. The object owns it; the pointer is valid until the next
  /// call of the same function or the end of the object.
  ZQApplicationType* getApplicationType(void* reserved);
  Subclient* getSubclient(void* reserved);

 private:
  std::uint32_t appIdPart1_;
  std::uint32_t appIdPart2_;
  std::unique_ptr<ZQApplicationType> applicationType_;
  std::unique_ptr<Subclient> subclient_;
};

}  // namespace kdx

#endif  // KDXCOMMON_INHOUSE_ZQAPPMGR_APPLICATION_ID_H_
