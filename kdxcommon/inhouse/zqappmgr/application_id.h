// The application manager: ApplicationId stands for one subclient of one application, and gives the records that the
// installation holds of both.
//
//   kdx::ApplicationId id(appIdPart1, appIdPart2);
//   kdx::Subclient* subclient = id.getSubclient(nullptr);
//   if (subclient) use(subclient->id());
//
// Every look-up asks the embedded site. Thread rule: one thread uses an object at a time. A failed look-up gives null
// or a non-zero number and leaves its outputs; nothing throws but an allocation.

#ifndef KDXCOMMON_INHOUSE_ZQAPPMGR_APPLICATION_ID_H_
#define KDXCOMMON_INHOUSE_ZQAPPMGR_APPLICATION_ID_H_

#include <cstdint>
#include <memory>

#include "kdxcommon/base/export.h"

namespace kdx {

/// What is known of a subclient, as it stood when it was looked up.
class KDX_EXPORT Subclient {
 public:
  Subclient(std::uint32_t id, std::uint32_t dataCollectionOptions)
      : id_(id), dataCollectionOptions_(dataCollectionOptions) {}
  virtual ~Subclient();

  /// The subclient's own id; 0 is none.
  virtual std::uint32_t id() const { return id_; }

  /// Sets `options` to the word of data collection option bits. Gives 0; the second argument is not looked at.
  int getKDXDataCollectionOptions(std::uint32_t& options, void* reserved) const;

 private:
  std::uint32_t id_;
  std::uint32_t dataCollectionOptions_;
};

/// What is known of an application's type, as it stood when it was looked up.
class KDX_EXPORT ZQApplicationType {
 public:
  ZQApplicationType(int number, bool collectsData) : number_(number), collectsData_(collectsData) {}
  virtual ~ZQApplicationType();

  /// The application type's number.
  virtual int number() const { return number_; }

  /// Sets `enabled` to the type's data collection property. Gives 0; the second argument is not looked at.
  int isKDXdataCollectionEnabled(bool& enabled, void* reserved) const;

 private:
  int number_;
  bool collectsData_;
};

/// One subclient of one application.
class KDX_EXPORT ApplicationId {
 public:
  ApplicationId(std::uint32_t appIdPart1, std::uint32_t appIdPart2);
  ~ApplicationId();
  ApplicationId(const ApplicationId&) = delete;
  ApplicationId& operator=(const ApplicationId&) = delete;

  /// 0 with `type` set, or non-zero with `type` untouched where the site doesn't know the application. The second
  /// argument is not looked at, here and below.
  int getAppType(std::uint32_t& type, void* reserved) const;

  /// The records, null where the site doesn't know them. They belong to this object and hold until the same question is
  /// put to it again, or it ends.
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
