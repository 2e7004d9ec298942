/* A library as one of an older version might be: it has all functions but orv_GetOutputImage. */
#ifdef _WIN32
#define ORV_API __declspec(dllexport)
#endif
#include <orvane/orvane.h>

int32_t orv_InitDLL(void) { return ORV_OK; }
int32_t orv_ReleaseDLL(void) { return ORV_OK; }
int32_t orv_SetLanguageFile(const char* path) { return path ? ORV_OK : ORV_BAD_ARGUMENT; }
int32_t orv_SetOwnerWindow(orv_Window owner) { return owner ? ORV_OK : ORV_NO_SESSION; }
int32_t orv_SetVisibleMode(orv_Bool visible) { return visible * ORV_OK; }
int32_t orv_SetSizeOutputImage(int32_t width, int32_t height) { return (width + height) * ORV_OK; }
int32_t orv_SetFaceCropRatio(float ratio) { return ratio > 0 ? ORV_OK : ORV_BAD_ARGUMENT; }
int32_t orv_EnableAction(int32_t action, orv_Bool enable) { return (action + enable) * ORV_OK; }
int32_t orv_GetBitDepth(orv_Handle dib) { return dib ? 24 : ORV_LOCK_FAILED; }
int32_t orv_DetectFacePicture(orv_Handle dib) { return dib ? ORV_OK : ORV_LOCK_FAILED; }
int32_t orv_DetectFaceLive(int32_t deviceIndex) { return deviceIndex * ORV_OK; }
