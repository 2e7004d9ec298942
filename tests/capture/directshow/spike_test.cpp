#include "capture/directshow/directshow_source.h"
#include "platform/thread_apartment.h"
#include "tests/capture/directshow/test_cameras.h"
#include <cstdio>
using namespace orvane; using namespace orvane::test;
struct Sink final : FrameSink { std::atomic<int> n{0}; std::atomic<int> len{0}; double t=0; unsigned char px[3]={};
 int32 BufferCB(double tt,const uint8*b,int32 l) override { ++n; len=l; t=tt; if(l>3) {px[0]=b[0];px[1]=b[1];px[2]=b[2];} return 0; } };
TEST(Spike, All) {
  ThreadApartment apartment;
  std::vector<TestCamera> all; for (int i=0;i<kCameraCount;++i) all.push_back(TestCamera(i));
  TestCameras cameras(all);
  cameras.Show(TestCameras::MovingFace(320,240,100,60,120));
  DirectShowSource source;
  int n=source.EnumerateDevices();
  std::printf("devices %d\n", n);
  auto sh=[](const wchar_t*t){return t?t:L"(none)";};
  for(int i=0;i<n;++i){ DWORD t0=GetTickCount();
    std::printf("%d %ls | %ls | %ls\n", i, sh(source.Text(i,DeviceText::friendlyName)), sh(source.Text(i,DeviceText::description)), sh(source.Text(i,DeviceText::devicePath)));
    VideoFormat f[8]; int c=source.Formats(i,f,8); for(int k=0;k<c;++k) std::printf("   %dx%d %d %s\n", f[k].width,f[k].height,f[k].framesIn1000s,f[k].pixels);
    std::fflush(stdout);
    ImageSize size{}; bool ok=source.Open(i,&size); std::printf("  open %d %dx%d (%lu ms)\n", ok,size.width,size.height,GetTickCount()-t0); std::fflush(stdout);
    if(!ok) { auto k=TestCameras::Counters(); std::printf("  objects %ld\n", k.objects); continue; }
    Sink sink; ok=source.ConfigureWindow(1,sink); std::printf("  configure %d\n", ok); std::fflush(stdout);
    ok=source.Run(); Sleep(600); int a=sink.n; std::printf("  run %d frames %d len %d t %f px %d %d %d\n", ok,a,(int)sink.len,sink.t,sink.px[0],sink.px[1],sink.px[2]); std::fflush(stdout);
    ok=source.Pause(); int b=sink.n; Sleep(400); std::printf("  pause %d frames %d -> %d\n", ok,b,(int)sink.n); std::fflush(stdout);
    ok=source.Run(); Sleep(300); std::printf("  run %d frames %d\n", ok,(int)sink.n); std::fflush(stdout);
    DWORD t1=GetTickCount(); source.Close(); int e=sink.n; std::printf("  close %lu ms\n", GetTickCount()-t1); Sleep(200); auto k=TestCameras::Counters(); std::printf("  after close %d -> %d objects %ld threads %ld\n", e,(int)sink.n,k.objects,k.threads); std::fflush(stdout);
  }
}
