// Reading and scaling the logo with the Windows Imaging Component.
//
// SPDX-License-Identifier: MIT
#include "platform/win32/window/picture.h"

#include <wincodec.h>

#include <array>
#include <stdexcept>

#include "platform/win32/com.h"

namespace platform {
namespace {

constexpr CLSID kImagingFactory = {
    0xcacaf262, 0x9370, 0x4615, {0xa1, 0x3b, 0x9f, 0x55, 0x39, 0xda, 0x4c, 0x0a}};
constexpr GUID kPremultiplied = {
    0x6fddc324, 0x4e03, 0x4bfe, {0xb1, 0x85, 0x3d, 0x77, 0x76, 0x8d, 0xc9, 0x10}};

/// As assets/CMakeLists.txt makes them: a logo column of one inch and a bit at 96 to 288 dots.
constexpr std::array<int, 9> kWidths = {100, 125, 150, 175, 200, 225, 250, 275, 300};

/// The one that is exactly as wide, or the next wider one: making smaller keeps it sharp.
int WidthToRead(int width) {
  for (const int kept : kWidths) {
    if (kept >= width) return kept;
  }
  return kWidths.back();
}

ComPtr<IWICStream> ResourceStream(IWICImagingFactory* factory, int number) {
  const HRSRC resource = FindResourceW(nullptr, MAKEINTRESOURCEW(number), RT_RCDATA);
  const HGLOBAL loaded = resource ? LoadResource(nullptr, resource) : nullptr;
  void* const bytes = loaded ? LockResource(loaded) : nullptr;
  if (!bytes) throw std::runtime_error("the program holds no such picture");
  ComPtr<IWICStream> stream;
  Check(factory->CreateStream(stream.Out()));
  Check(stream->InitializeFromMemory(static_cast<BYTE*>(bytes), SizeofResource(nullptr, resource)));
  return stream;
}

ComPtr<IWICBitmapSource> Decoded(IWICImagingFactory* factory, int number) {
  const auto stream = ResourceStream(factory, number);
  ComPtr<IWICBitmapDecoder> decoder;
  Check(factory->CreateDecoderFromStream(stream.Get(), nullptr, WICDecodeMetadataCacheOnDemand,
                                         decoder.Out()));
  ComPtr<IWICBitmapFrameDecode> frame;
  Check(decoder->GetFrame(0, frame.Out()));
  ComPtr<IWICFormatConverter> converter;
  Check(factory->CreateFormatConverter(converter.Out()));
  Check(converter->Initialize(frame.Get(), kPremultiplied, WICBitmapDitherTypeNone, nullptr, 0,
                              WICBitmapPaletteTypeCustom));
  return ComPtr<IWICBitmapSource>::Share(converter.Get());
}

ComPtr<IWICBitmapSource> Scaled(IWICImagingFactory* factory, ComPtr<IWICBitmapSource> source,
                                int width) {
  UINT fullWidth = 0, fullHeight = 0;
  Check(source->GetSize(&fullWidth, &fullHeight));
  const auto wanted = static_cast<UINT>(width);
  if (fullWidth == wanted) return source;
  ComPtr<IWICBitmapScaler> scaler;
  Check(factory->CreateBitmapScaler(scaler.Out()));
  Check(scaler->Initialize(source.Get(), wanted, (fullHeight * wanted + fullWidth / 2) / fullWidth,
                           WICBitmapInterpolationModeFant));
  return ComPtr<IWICBitmapSource>::Share(scaler.Get());
}

Picture BitmapFrom(IWICBitmapSource* source) {
  UINT width = 0, height = 0;
  Check(source->GetSize(&width, &height));
  BITMAPINFO description = {};
  description.bmiHeader.biSize = sizeof description.bmiHeader;
  description.bmiHeader.biWidth = static_cast<LONG>(width);
  description.bmiHeader.biHeight = -static_cast<LONG>(height);  // the first row is the top one
  description.bmiHeader.biPlanes = 1;
  description.bmiHeader.biBitCount = 32;
  void* pixels = nullptr;
  Picture picture;
  picture.bitmap.reset(
      CreateDIBSection(nullptr, &description, DIB_RGB_COLORS, &pixels, nullptr, 0));
  if (!picture.bitmap) throw std::bad_alloc();
  Check(source->CopyPixels(nullptr, width * 4, width * height * 4, static_cast<BYTE*>(pixels)));
  picture.width = static_cast<int>(width);
  picture.height = static_cast<int>(height);
  return picture;
}

}  // namespace

Picture LogoOfWidth(int width) {
  if (width <= 0) throw std::invalid_argument("a picture has a width");
  const auto factory = CreateObject<IWICImagingFactory>(kImagingFactory);
  const auto logo = Decoded(factory.Get(), WidthToRead(width));
  return BitmapFrom(Scaled(factory.Get(), logo, width).Get());
}

}  // namespace platform
