#pragma once
// Every key of the persistent settings store, in one place. Values are byte for byte
// what earlier versions stored, so a store survives upgrades.
namespace qmv {

inline constexpr const char* kUserPhoneKey = "user_phone";            // text: last account phone
inline constexpr const char* kPasswordKey = "password";               // text: password as typed
inline constexpr const char* kIsLaunchedKey = "isLaunched";           // bool: first launch done
inline constexpr const char* kSelectCityKey = "select_city";          // text: browsed city
inline constexpr const char* kSelectCityDisKey = "select_city_dis";   // text: displayed city
inline constexpr const char* kRecordCityKey = "record_city";          // array: recent cities
inline constexpr const char* kTemplatesKey = "templates";             // text: templates response
inline constexpr const char* kSearchTypesKey = "SearchTypes";         // text: catalogue response
inline constexpr const char* kSearchKeyWordsKey = "searchKeyWords";   // array: search history
inline constexpr const char* kAreaVersionKey = "area_version";        // text: area data version
inline constexpr const char* kLastAreaIdKey = "last_area_id";         // text: area cache marker
inline constexpr const char* kHeaderImageNowKey = "headerImage_now";  // binary: portrait JPEG
inline constexpr const char* kDeviceIdKey = "device_id";              // text: device identity (UUID)
inline constexpr const char* kChangePhoneCodeKey = "change_phone_code";  // object: phone change's code

}  // namespace qmv
