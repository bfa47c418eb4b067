#include "user/picture.h"

#include <fstream>
#include <vector>

#include "user/user_error.h"

namespace {
constexpr DWORD CalmMs = 100;  ///< longer than a fading control takes to draw itself
constexpr int MaxLooks = 20;

BITMAPINFOHEADER HeaderFor(LONG width, LONG height) {
  BITMAPINFOHEADER header{};
  header.biSize = sizeof header;
  header.biWidth = width;
  header.biHeight = height;
  header.biPlanes = 1;
  header.biBitCount = 24;
  header.biSizeImage = static_cast<DWORD>((width * 3 + 3) / 4 * 4 * height);
  return header;
}

std::vector<char> Look(const RECT& area) {
  const LONG width = area.right - area.left;
  const LONG height = area.bottom - area.top;
  const HDC screen = GetDC(nullptr);
  const HDC memory = CreateCompatibleDC(screen);
  const HBITMAP bitmap = CreateCompatibleBitmap(screen, width, height);
  const HGDIOBJ previous = SelectObject(memory, bitmap);
  BitBlt(memory, 0, 0, width, height, screen, area.left, area.top, SRCCOPY);
  SelectObject(memory, previous);

  BITMAPINFO info{};
  info.bmiHeader = HeaderFor(width, height);
  std::vector<char> pixels(info.bmiHeader.biSizeImage);
  const int lines =
      GetDIBits(memory, bitmap, 0, static_cast<UINT>(height), pixels.data(), &info, DIB_RGB_COLORS);
  DeleteObject(bitmap);
  DeleteDC(memory);
  ReleaseDC(nullptr, screen);
  if (lines != height) throw TUserError("the screen cannot be read");
  return pixels;
}
}  // namespace

void SavePicture(const RECT& area, const std::string& file) {
  std::vector<char> pixels = Look(area);
  for (int looks = 0; looks < MaxLooks; ++looks) {
    Sleep(CalmMs);
    std::vector<char> again = Look(area);
    const bool calm = again == pixels;
    pixels = std::move(again);
    if (calm) break;
  }
  const BITMAPINFOHEADER header = HeaderFor(area.right - area.left, area.bottom - area.top);
  BITMAPFILEHEADER fileHeader{};
  fileHeader.bfType = 0x4D42;
  fileHeader.bfOffBits = sizeof fileHeader + sizeof header;
  fileHeader.bfSize = fileHeader.bfOffBits + header.biSizeImage;
  std::ofstream out(file, std::ios::binary);
  out.write(reinterpret_cast<const char*>(&fileHeader), sizeof fileHeader);
  out.write(reinterpret_cast<const char*>(&header), sizeof header);
  out.write(pixels.data(), static_cast<std::streamsize>(pixels.size()));
  if (!out) throw TUserError("cannot write " + file);
}
