#include "ui/gui/wx/conversion.h"

#include <wx/image.h>

#include <cstdlib>
#include <cstring>
#include <new>

namespace {

// An image takes bytes over that malloc gave.
unsigned char* copyOf(const std::uint8_t* bytes, std::size_t size) {
    void* copy = std::malloc(size);
    if (copy == nullptr) {
        throw std::bad_alloc();
    }
    std::memcpy(copy, bytes, size);
    return static_cast<unsigned char*>(copy);
}

class PixelByPixel : public wxBitmapBundleImpl {
public:
    explicit PixelByPixel(const wxBitmap& bitmap) : bitmap_(bitmap) {}
    wxSize GetDefaultSize() const override { return bitmap_.GetDIPSize(); }
    wxSize GetPreferredBitmapSizeAtScale(double /*scale*/) const override { return bitmap_.GetSize(); }
    wxBitmap GetBitmap(const wxSize& /*size*/) override { return bitmap_; }

private:
    wxBitmap bitmap_;
};

}  // namespace

wxString wideText(std::string_view utf8) {
    return wxString::FromUTF8(utf8.data(), utf8.size());
}

void handOver(const wxString& text, TextReceiver& receiver) {
    const wxScopedCharBuffer utf8 = text.utf8_str();
    receiver.take(std::string_view(utf8.data(), utf8.length()));
}

wxColour colourOf(std::int32_t colour) {
    return colour == -1 ? wxColour() : wxColour(static_cast<unsigned long>(colour) & 0xFFFFFFU);
}

wxBitmap bitmapOf(const Picture& picture, double density) {
    if (picture.width < 1 || picture.height < 1 || picture.rgb == nullptr) {
        return {};
    }
    const std::size_t pixels = std::size_t(picture.width) * std::size_t(picture.height);
    wxImage image(picture.width, picture.height, copyOf(picture.rgb, pixels * 3));
    if (picture.alpha != nullptr) {
        image.SetAlpha(copyOf(picture.alpha, pixels));
    }
    return {image, wxBITMAP_SCREEN_DEPTH, density};
}

wxBitmapBundle unscaled(const wxBitmap& bitmap) {
    // The bundle takes it over. NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks)
    return wxBitmapBundle::FromImpl(new PixelByPixel(bitmap));
}
