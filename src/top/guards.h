/* Puts a value back as it was at the end of a frame, on every way out. */
#pragma once

namespace tolvek {

template <class T> class kept_value {
  public:
    explicit kept_value(T &place) : at(place), was(place) {}
    kept_value(T &place, T value) : at(place), was(place) { at = value; }
    ~kept_value() { at = was; }
    kept_value(const kept_value &) = delete;
    kept_value &operator=(const kept_value &) = delete;

  private:
    T &at;
    T was;
};

} // namespace tolvek
