#pragma once
// What the request layer says to the member itself.
namespace qmv::request_texts {

inline constexpr const char* kConnectionFailed = "连接服务器失败,请稍后再试";

}  // namespace qmv::request_texts
