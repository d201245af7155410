// The base of the program's library-level failures: an exception that carries its text.
#pragma once

#include <exception>
#include <string>
#include <utility>

class ZephrinException : public std::exception {
 public:
  explicit ZephrinException(std::string text) : text_(std::move(text)) {}
  const char* what() const noexcept override { return text_.c_str(); }
  const std::string& Text() const { return text_; }

 private:
  std::string text_;
};
