#pragma once

namespace orv::sync {

class Condition;
class Event;
class FakeMutex;
class Gate;
class Lock;
class LockObject;
class Mutex;
class Object;
class ReaderWriterLock;
class Semaphore;

} // namespace orv::sync
