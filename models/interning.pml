/*
 * The protocol by which a handle enters and leaves an interning table, for an exhaustive
 * search of all interleavings of a few threads (./dev models).
 *
 * One handle `h` meets two shells. A shell is what stays of a table when the table is
 * destroyed: its shard lock and its number. The handle's word holds count, state and
 * table number, and changes by one compare-and-exchange. The threads:
 *
 *   Maker    has the only reference to a new handle, interns it, may be refused by an
 *            observer, tries again, and releases;
 *   Finder   looks the handle up, copies its reference, and releases;
 *   Keeper   destroys the table of shell 0 when no thread uses that table, and makes a
 *            new table on the same shell.
 *
 * What must hold:
 *   - no thread touches the handle after it was freed, or a shell that was freed;
 *   - an observer hears of insertion and removal in turn;
 *   - when all threads have ended, the handle is freed and no table has it.
 *
 * Each macro that begins with WRONG_ makes one step of the protocol wrong. The search
 * must find what that breaks; scripts/check_models.py checks both directions.
 */

#ifndef ATTEMPTS
#define ATTEMPTS 2 /* how often the maker interns the handle */
#endif

#ifndef LOOKUPS
#define LOOKUPS 1 /* how often a finder looks the handle up */
#endif
#define SHELLS 2
#define IDLE 1 /* the table's own reference */

mtype = { fresh, interned, gone };

/* The word of the handle. */
byte count = 1;
mtype state = fresh;
byte table = 0;

bool freed = false;

/* The shells: shard lock, bucket, notification lock, what the observer believes. */
bool shardLocked[SHELLS];
bool inBucket[SHELLS];
bool notificationLocked[SHELLS];
bool observed[SHELLS];
bool observerHas[SHELLS];
bool shellFreed[SHELLS];

/* How many threads hold a reference to the table itself. */
byte users[SHELLS];
bool tableOpen[SHELLS];

byte running = 0;
byte refusals = 0; /* an observer refuses once at most */

#define TOUCH assert(!freed)

inline lock(i) { atomic { assert(!shellFreed[i]); !shardLocked[i] -> shardLocked[i] = true } }
inline unlock(i) { shardLocked[i] = false }
inline lockNotices(i) {
  atomic { assert(!shellFreed[i]); !notificationLocked[i] -> notificationLocked[i] = true }
}
inline unlockNotices(i) { notificationLocked[i] = false }

inline tell(i, comes) {
  atomic {
    if
    :: observed[i] -> assert(observerHas[i] != comes); observerHas[i] = comes
    :: else -> skip
    fi
  }
}

/* Frees the handle if the count that is left says so. */
inline freeIfLast(left) {
  if
  :: left == 0 -> atomic { assert(!freed); assert(state != interned); freed = true }
  :: else -> skip
  fi
}

/* The table gives up its own reference to a handle that has left it. */
inline tableReferenceDrop() {
  atomic { TOUCH; count--; left = count }
  freeIfLast(left)
}

/* Gives up one reference of the calling thread. */
inline release() {
  done = false;
  do
  :: done -> break
  :: !done ->
#ifdef WRONG_COUNT_FIRST
    /* Counts down, and only then takes the lock and looks. */
    atomic { TOUCH; seenState = state; seenTable = table; count--; left = count }
    done = true;
    if
    :: left == IDLE && seenState == interned ->
      lockNotices(seenTable);
      lock(seenTable);
      TOUCH;
      if
      :: count == IDLE ->
        inBucket[seenTable] = false; state = gone;
        unlock(seenTable); tell(seenTable, false); unlockNotices(seenTable);
        tableReferenceDrop()
      :: else -> unlock(seenTable); unlockNotices(seenTable)
      fi
    :: else -> freeIfLast(left)
    fi
#else
    atomic { TOUCH; seen = count; seenState = state; seenTable = table }
    if
    /* Other users remain: one compare-and-exchange, whatever the state. */
    :: seen - 1 > IDLE ->
      atomic {
        TOUCH;
        if
        :: count == seen && state == seenState && table == seenTable -> count--; done = true
        :: else -> skip
        fi
      }
    /* No member: the same exchange demands that it still is none. */
    :: seen - 1 <= IDLE && seenState != interned ->
#ifdef WRONG_SUBTRACT_UNSEEN
      atomic { TOUCH; count--; left = count; done = true };
      freeIfLast(left)
#else
      atomic {
        TOUCH;
        if
        :: count == seen && state == seenState && table == seenTable ->
          count--; left = count; done = true
        :: else -> skip
        fi
      }
      if
      :: done -> freeIfLast(left)
      :: else -> skip
      fi
#endif
    /* The last user, perhaps: the table decides under its locks. */
    :: seen - 1 <= IDLE && seenState == interned ->
#ifndef WRONG_NOTICE_LATE
      lockNotices(seenTable);
#endif
      lock(seenTable);
      leaves = false;
#ifdef WRONG_NO_SECOND_LOOK
      if
      :: true ->
#else
      if
      :: state != interned || table != seenTable -> skip /* left meanwhile: begin anew */
      :: state == interned && table == seenTable ->
#endif
        atomic {
          TOUCH;
          done = true; count--; left = count;
          if
          :: left == IDLE -> state = gone; leaves = true
          :: else -> skip
          fi
        }
        if
        :: leaves -> inBucket[seenTable] = false
        :: else -> skip
        fi
      fi
      unlock(seenTable);
#ifdef WRONG_NOTICE_LATE
      if
      :: leaves -> tell(seenTable, false)
      :: else -> skip
      fi
#else
      if
      :: leaves -> tell(seenTable, false)
      :: else -> skip
      fi
      unlockNotices(seenTable);
#endif
      if
      :: leaves -> tableReferenceDrop()
      :: else -> skip
      fi
    fi
#endif
  od
}

/* Takes a reference if the table has the handle; `held` counts the thread's references. */
inline lookup(i) {
  lock(i);
  if
  :: inBucket[i] -> atomic { TOUCH; count++; held++ }
  :: else -> skip
  fi
  unlock(i)
}

/* Interns the handle, to which the caller has a reference. An observer may refuse. */
inline dedup(i) {
#ifndef WRONG_NOTICE_LATE
  lockNotices(i);
#endif
  lock(i);
  if
  :: inBucket[i] -> unlock(i)
  :: !inBucket[i] ->
    atomic {
      TOUCH; assert(state != interned);
      count++; state = interned; table = i; inBucket[i] = true
    }
    unlock(i);
    if
    :: tell(i, true)
    :: atomic { refusals < 1 -> refusals++ } ->
      lock(i);
      atomic { TOUCH; inBucket[i] = false; state = gone; count--; assert(count > 0) }
      unlock(i)
    fi
  fi
#ifndef WRONG_NOTICE_LATE
  unlockNotices(i)
#endif
}

/* Begins to use the table of shell i, if there is one. */
inline enter(i) {
  atomic {
    if
    :: tableOpen[i] -> users[i]++; entered = true
    :: else -> entered = false
    fi
  }
}
inline leave(i) { atomic { users[i]-- } }

proctype Maker() {
  byte seen, seenTable, left, step, shell; mtype seenState; bool done, leaves, entered;
  step = 0;
  do
  :: step == ATTEMPTS -> break
  :: step < ATTEMPTS ->
    step++;
    if
    :: shell = 0
    :: shell = 1
    fi
    /* A handle is interned in one table at a time. */
    enter(shell);
    if
    :: entered ->
      if
      :: state != interned -> dedup(shell)
      :: else -> skip
      fi
      leave(shell)
    :: else -> skip
    fi
  od
  release();
  atomic { running-- }
}

proctype Finder() {
  byte seen, seenTable, left, step, held, shell; mtype seenState; bool done, leaves, entered;
  step = 0; held = 0;
  do
  :: step == LOOKUPS -> break
  :: step < LOOKUPS ->
    step++;
    if
    :: shell = 0
    :: shell = 1
    fi
    enter(shell);
    if
    :: entered -> lookup(shell); leave(shell)
    :: else -> skip
    fi
    if
    :: held == 1 -> atomic { TOUCH; count++; held++ } /* a copy of the pointer */
    :: held > 0 -> release(); held--
    :: skip
    fi
  od
  do
  :: held == 0 -> break
  :: held > 0 -> release(); held--
  od
  atomic { running-- }
}

/* Destroys the table of shell i. No thread uses the table itself any more, but handles of
 * its members may be released at any moment. The member leaves and the table's reference
 * goes in one step: a reference that goes later, without a lock, would count as a user's
 * in a table that the handle enters meanwhile. */
inline destroy(i) {
  lockNotices(i);
  atomic { observed[i] = false; observerHas[i] = false } /* the observer stops */
  unlockNotices(i);
  lock(i);
  leaves = inBucket[i];
  if
#ifdef WRONG_DROP_LATER
  :: leaves -> atomic { TOUCH; inBucket[i] = false; state = gone }
#else
  :: leaves -> atomic { TOUCH; inBucket[i] = false; state = gone; count--; left = count }
#endif
  :: else -> skip
  fi
  unlock(i);
#ifdef WRONG_SHELL_FREED
  shellFreed[i] = true;
#endif
  if
#ifdef WRONG_DROP_LATER
  :: leaves -> tableReferenceDrop()
#else
  :: leaves -> freeIfLast(left)
#endif
  :: else -> skip
  fi
}

proctype Keeper() {
  byte left; bool leaves;
  if
  :: atomic { users[0] == 0 -> tableOpen[0] = false };
    destroy(0);
#ifndef WRONG_SHELL_FREED
    if
    :: /* A new table on the same shell. Its observer registers under the lock, so that a
        * release that emptied the old table cannot tell the new observer. */
#ifndef WRONG_REGISTERS_UNLOCKED
      lockNotices(0);
#endif
      atomic { observed[0] = true; tableOpen[0] = true }
#ifndef WRONG_REGISTERS_UNLOCKED
      unlockNotices(0)
#endif
    :: skip
    fi
#endif
  :: skip
  fi
  atomic { running-- }
}

init {
  atomic {
    tableOpen[0] = true; tableOpen[1] = true; observed[0] = true; observed[1] = true;
    running = 4;
    run Maker(); run Finder(); run Finder(); run Keeper()
  }
  running == 0;
  /* What is left is in a table that still lives, or nothing is left. */
  assert(freed);
  assert(!inBucket[0] && !inBucket[1]);
}
