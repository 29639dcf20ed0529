#include "tests/support/FakeSoundServer.h"

#include "MeetingCore/base/Failures.h"

#include <thread>

namespace varnet::test {

namespace {

/// Runs the work on a thread that is not the main one, as a sound server calls back.
template <class Work>
void elsewhere(Work work) {
    std::thread(work).join();
}

class FakeCapture final : public AudioCapture {
public:
    explicit FakeCapture(FakeSoundServer& server) : m_server(server) {}
    ~FakeCapture() override { m_capture->running = false; }

    Task<> start(std::vector<CaptureSource> sources, Callbacks callbacks) override {
        *m_capture = {std::move(sources), std::move(callbacks)};
        return run(&m_server, m_capture);
    }
    Task<> stop() override {
        if (std::exchange(m_capture->running, false) && m_server.stopFailure)
            fail(m_server, *m_capture, m_server.stopFailure);
        co_return;
    }

private:
    static Task<> run(FakeSoundServer* server, std::shared_ptr<FakeSoundServer::Capture> capture) {
        server->captures.push_back(capture);
        if (server->duringStart)
            server->duringStart();
        co_await server->startsPass.wait();
        const auto failure = capture->sources.size() > 1 ? server->callFailure : server->microphoneFailure;
        if (failure)
            fail(*server, *capture, failure);
        capture->running = true;
    }
    [[noreturn]] static void fail(FakeSoundServer& server, FakeSoundServer::Capture& capture,
                                  const std::exception_ptr& failure) {
        if (server.failuresAreReportedToo)
            elsewhere([&] { capture.callbacks.onError(failure); });
        std::rethrow_exception(failure);
    }

    FakeSoundServer& m_server;
    std::shared_ptr<FakeSoundServer::Capture> m_capture = std::make_shared<FakeSoundServer::Capture>();
};

} // namespace

std::unique_ptr<AudioCapture> FakeSoundServer::makeCapture() {
    return std::make_unique<FakeCapture>(*this);
}

void FakeSoundServer::deliver(CaptureSource source, std::size_t frameCount, std::int64_t time, float value) {
    const std::vector<float> samples(frameCount, value);
    elsewhere([&] { captures.back()->callbacks.onBuffer({source, {16'000, 1}, samples, time}); });
}

void FakeSoundServer::fail(const std::string& message) {
    elsewhere([&] { captures.back()->callbacks.onError(std::make_exception_ptr(Failure(message))); });
}

void FakeSoundServer::notify(const std::string& notice) {
    elsewhere([&] { captures.back()->callbacks.onNotice(notice); });
}

} // namespace varnet::test
