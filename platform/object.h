// The root of what has an identity: window, controllers, views, and the model objects that an outline or
// table shows.
#pragma once

namespace pelmarix::platform {

/// Shared by reference and compared by address; copying one would make another object of it.
class Object {
 public:
  Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  virtual ~Object() = default;
};

}  // namespace pelmarix::platform
