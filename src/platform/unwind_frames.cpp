#include <windows.h>

#include <cstring>

// Exceptions of this library are unwound by the copy of the compiler's run-time inside it, which
// must know the library's unwind tables. The start-up code announces them, but to the shared
// run-time when the process has that one already, and then the copy knows nothing: the first
// exception would end the host.

extern "C" {
// The run-time's own note of a table: six words at most.
struct TUnwindRecord {
  void* Words[8];
};
void __register_frame_info(const void* tables, TUnwindRecord* record);
void* __deregister_frame_info(const void* tables);

// Set by the linker to where this module lies.
extern IMAGE_DOS_HEADER __ImageBase;
}

namespace {

/// The library's unwind tables; null when the image has none.
const void* UnwindTables() {
  constexpr char name[] = ".eh_frame";  // a section's header has room for its first eight letters
  const auto* image = reinterpret_cast<const unsigned char*>(&__ImageBase);
  const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(image + __ImageBase.e_lfanew);
  const auto* section = IMAGE_FIRST_SECTION(headers);
  for (int left = headers->FileHeader.NumberOfSections; left > 0; --left, ++section)
    if (std::memcmp(section->Name, name, sizeof section->Name) == 0)
      return image + section->VirtualAddress;
  return nullptr;
}

class TUnwindFrames {
 public:
  TUnwindFrames() {
    if (!GetModuleHandleW(L"libgcc_s_dw2-1.dll")) return;
    FTables = UnwindTables();
    if (FTables) __register_frame_info(FTables, &FRecord);
  }
  TUnwindFrames(const TUnwindFrames&) = delete;
  TUnwindFrames& operator=(const TUnwindFrames&) = delete;
  /// Gives back what the run-time allocated for the tables.
  ~TUnwindFrames() {
    if (FTables) __deregister_frame_info(FTables);
  }

 private:
  const void* FTables = nullptr;
  TUnwindRecord FRecord{};
};

/// Made before all else of the library and destroyed last.
[[gnu::init_priority(101)]] TUnwindFrames unwindFrames;

}  // namespace
