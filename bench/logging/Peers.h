#pragma once

#include "bench/logging/End.h"

#include <atomic>
#include <memory>
#include <string>

#if __has_include(<spdlog/async.h>)
#define ORV_BENCH_SPDLOG 1
#include <spdlog/async.h>
#include <spdlog/sinks/base_sink.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>
#endif
#if __has_include(<Poco/AsyncChannel.h>)
#define ORV_BENCH_POCO 1
#include <Poco/AsyncChannel.h>
#include <Poco/AutoPtr.h>
#include <Poco/FileChannel.h>
#include <Poco/FormattingChannel.h>
#include <Poco/Logger.h>
#include <Poco/PatternFormatter.h>
#endif
#if __has_include(<log4cxx/asyncappender.h>)
#define ORV_BENCH_LOG4CXX 1
#include <log4cxx/appenderskeleton.h>
#include <log4cxx/asyncappender.h>
#include <log4cxx/fileappender.h>
#include <log4cxx/helpers/pool.h>
#include <log4cxx/logger.h>
#include <log4cxx/patternlayout.h>
#endif

/// \file
/// The peers, set up to write the entries of BasicLogWriter byte for byte, but for the width of the
/// thread's identifier. Each has log() for the producers, and finish(), which returns when all
/// entries have reached the end, and tells how many did where it is our end.

namespace orv::bench {

/// The peers count their entries themselves.
inline std::atomic<unsigned> s_sequence{0};

// Room for all entries of a run: no call waits for room, as in an unbounded queue.
inline constexpr std::size_t PEER_QUEUE = 131072;

#ifdef ORV_BENCH_SPDLOG

class SpdlogEnd : public spdlog::sinks::base_sink<std::mutex> {
public:
    explicit SpdlogEnd(std::shared_ptr<End> end) : m_end(std::move(end)) {}

protected:
    void sink_it_(const spdlog::details::log_msg& message) override
    {
        spdlog::memory_buf_t text;
        formatter_->format(message, text);
        m_end->put(text.data(), text.size());
    }
    void flush_() override { m_end->flush(); }

private:
    std::shared_ptr<End> m_end;
};

class Spdlog {
public:
    explicit Spdlog(const Plan& plan)
    {
        std::shared_ptr<spdlog::sinks::sink> sink;
        if (plan.term == Term::Kernel) {
            sink = std::make_shared<spdlog::sinks::basic_file_sink_mt>(plan.file, true);
        } else {
            m_end = std::make_shared<End>(plan.term, plan.file);
            sink = std::make_shared<SpdlogEnd>(m_end);
        }
        if (plan.async) {
            m_pool = std::make_shared<spdlog::details::thread_pool>(PEER_QUEUE, 1);
            m_logger = std::make_shared<spdlog::async_logger>("log", sink, m_pool);
        } else {
            m_logger = std::make_shared<spdlog::logger>("log", sink);
        }
        m_logger->set_pattern("%v\nthread=%t\ntimestamp=%D %T\n-------------------------");
        m_logger->flush_on(spdlog::level::trace);
    }
    void log()
    {
        m_logger->info("sequence={}\nlevel=3\ntext={}",
                       s_sequence.fetch_add(1, std::memory_order_relaxed), TEXT);
    }
    long finish(long)
    {
        m_logger->flush();
        m_logger.reset();
        m_pool.reset();
        return m_end ? m_end->entries() : -1;
    }

private:
    std::shared_ptr<End> m_end;
    std::shared_ptr<spdlog::details::thread_pool> m_pool;
    std::shared_ptr<spdlog::logger> m_logger;
};

#endif
#ifdef ORV_BENCH_POCO

class PocoEnd : public Poco::Channel {
public:
    explicit PocoEnd(std::shared_ptr<End> end) : m_end(std::move(end)) {}
    void log(const Poco::Message& message) override
    {
        const Poco::FastMutex::ScopedLock lock(m_mutex);
        m_end->put(message.getText().data(), message.getText().size());
        m_end->flush();
    }

private:
    std::shared_ptr<End> m_end;
    Poco::FastMutex m_mutex;
};

class PocoLogger {
public:
    explicit PocoLogger(const Plan& plan)
    {
        const bool isFile = plan.term == Term::Kernel;
        Poco::AutoPtr<Poco::Channel> target;
        if (isFile) {
            target = new Poco::FileChannel(plan.file);
            target->setProperty("flush", "true");
        } else {
            m_end = std::make_shared<End>(plan.term, plan.file);
            target = new PocoEnd(m_end);
        }
        // The file channel ends its lines itself.
        const std::string end = isFile ? "" : "\n";
        Poco::AutoPtr<Poco::PatternFormatter> format(new Poco::PatternFormatter(
            "%t\nthread=%I\ntimestamp=%m/%d/%y %H:%M:%S\n-------------------------" + end));
        format->setProperty("times", "local");
        m_channel = new Poco::FormattingChannel(format, target);
        if (plan.async) m_channel = new Poco::AsyncChannel(m_channel);
        m_channel->open();
        m_logger = &Poco::Logger::create("log", m_channel, Poco::Message::PRIO_INFORMATION);
    }
    void log()
    {
        m_logger->information("sequence=%u\nlevel=3\ntext=%s",
                              s_sequence.fetch_add(1, std::memory_order_relaxed), m_text);
    }
    long finish(long)
    {
        m_channel->close();
        Poco::Logger::destroy("log");
        m_channel = nullptr;
        return m_end ? m_end->entries() : -1;
    }

private:
    const std::string m_text = TEXT;
    std::shared_ptr<End> m_end;
    Poco::AutoPtr<Poco::Channel> m_channel;
    Poco::Logger* m_logger = nullptr;
};

#endif
#ifdef ORV_BENCH_LOG4CXX

namespace helpers = log4cxx::helpers; // named by the macros below

class Log4cxxEnd : public log4cxx::AppenderSkeleton {
public:
    DECLARE_LOG4CXX_OBJECT(Log4cxxEnd)
    BEGIN_LOG4CXX_CAST_MAP()
    LOG4CXX_CAST_ENTRY(Log4cxxEnd)
    LOG4CXX_CAST_ENTRY_CHAIN(AppenderSkeleton)
    END_LOG4CXX_CAST_MAP()

    Log4cxxEnd() = default;
    explicit Log4cxxEnd(std::shared_ptr<End> end) : m_end(std::move(end)) {}
    void append(const log4cxx::spi::LoggingEventPtr& event, log4cxx::helpers::Pool& pool) override
    {
        log4cxx::LogString text;
        getLayout()->format(text, event, pool);
        m_end->put(text.data(), text.size());
        m_end->flush();
    }
    void close() override {}
    bool requiresLayout() const override { return true; }

private:
    std::shared_ptr<End> m_end;
};

class Log4cxx {
public:
    explicit Log4cxx(const Plan& plan)
    {
        auto layout = std::make_shared<log4cxx::PatternLayout>(
            LOG4CXX_STR("%m%nthread=%t%ntimestamp=%d{MM/dd/yy HH:mm:ss}%n"
                        "-------------------------%n"));
        log4cxx::AppenderPtr target;
        log4cxx::helpers::Pool pool;
        if (plan.term == Term::Kernel) {
            auto file = std::make_shared<log4cxx::FileAppender>();
            file->setFile(plan.file);
            file->setAppend(false);
            file->setImmediateFlush(true);
            file->setBufferedIO(false);
            target = file;
        } else {
            m_end = std::make_shared<End>(plan.term, plan.file);
            target = std::make_shared<Log4cxxEnd>(m_end);
        }
        target->setLayout(layout);
        std::dynamic_pointer_cast<log4cxx::AppenderSkeleton>(target)->activateOptions(pool);
        m_target = target;
        m_logger = log4cxx::Logger::getLogger("peer");
        m_logger->setAdditivity(false);
        m_logger->removeAllAppenders();
        if (plan.async) {
            m_async = std::make_shared<log4cxx::AsyncAppender>();
            m_async->setBufferSize(static_cast<int>(PEER_QUEUE));
            m_async->setBlocking(true);
            m_async->addAppender(target);
            m_async->activateOptions(pool);
            m_logger->addAppender(m_async);
        } else {
            m_logger->addAppender(target);
        }
    }
    void log()
    {
        LOG4CXX_INFO(m_logger, "sequence=" << s_sequence.fetch_add(1, std::memory_order_relaxed)
                                           << "\nlevel=3\ntext=" << TEXT);
    }
    long finish(long)
    {
        m_logger->removeAllAppenders();
        if (m_async) m_async->close();
        m_target->close();
        return m_end ? m_end->entries() : -1;
    }

private:
    std::shared_ptr<End> m_end;
    log4cxx::AppenderPtr m_target;
    std::shared_ptr<log4cxx::AsyncAppender> m_async;
    log4cxx::LoggerPtr m_logger;
};

#endif

} // namespace orv::bench
