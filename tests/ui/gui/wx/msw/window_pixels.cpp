#include "ui/gui/wx/window_pixels.h"

#include <windows.h>

#include "platform/windows/wide_text.h"

namespace {

// The innermost window there; `point` becomes a place in it.
HWND windowAt(HWND window, POINT& point) {
    HWND inner = ChildWindowFromPointEx(window, point, CWP_SKIPINVISIBLE);
    if (inner == nullptr || inner == window) {
        return window;
    }
    MapWindowPoints(window, inner, &point, 1);
    return windowAt(inner, point);
}

// Four bytes a dot, the uppermost row first.
std::vector<std::vector<Dot>> dotsOf(HDC source, POINT from, int width, int height) {
    BITMAPINFO form{};
    form.bmiHeader.biSize = sizeof form.bmiHeader;
    form.bmiHeader.biWidth = width;
    form.bmiHeader.biHeight = -height;
    form.bmiHeader.biPlanes = 1;
    form.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    HDC copy = CreateCompatibleDC(source);
    HBITMAP bitmap = CreateDIBSection(copy, &form, DIB_RGB_COLORS, &bits, nullptr, 0);
    HGDIOBJ former = SelectObject(copy, bitmap);
    BitBlt(copy, 0, 0, width, height, source, from.x, from.y, SRCCOPY);
    GdiFlush();
    std::vector<std::vector<Dot>> columns(static_cast<std::size_t>(width));
    const auto* dots = static_cast<const RGBQUAD*>(bits);
    for (int i = 0; i < width * height; ++i) {
        columns[static_cast<std::size_t>(i % width)].push_back(
            {dots[i].rgbRed, dots[i].rgbGreen, dots[i].rgbBlue});
    }
    SelectObject(copy, former);
    DeleteObject(bitmap);
    DeleteDC(copy);
    return columns;
}

}  // namespace

WindowPixels::Columns WindowPixels::read(const std::string& title, const Place& place) {
    HWND frame = FindWindowW(nullptr, platform::wideOf(title).c_str());
    if (frame == nullptr || place.width < 1 || place.height < 1) {
        return {};
    }
    POINT from{place.x, place.y};
    HWND window = windowAt(frame, from);
    HDC source = GetDC(window);
    Columns columns = dotsOf(source, from, place.width, place.height);
    ReleaseDC(window, source);
    return columns;
}
