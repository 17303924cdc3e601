/* SPDX-License-Identifier: Apache-2.0
 *
 * A step program that joins its controller's link by the system's calls alone.
 *
 *     cc -std=c11 -o step links_step_program.c -pthread
 *     ./step -linkid=3
 *
 * It counts its progress from 0 to 1 and stops when it is asked to. It ends with 0 if it got to its
 * end, 1 if it was stopped, 2 if it could not join and 3 if its link was taken away.
 */
#define _POSIX_C_SOURCE 200809L

#include <errno.h>
#include <fcntl.h>
#include <pwd.h>
#include <semaphore.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

enum { SLOTS = 50, LINKS = 100, BLOCK_SIZE = 462000, KEY_SIZE = 500, DATA_SIZE = 4096 };

struct link {
    uint8_t attachments;    /* 0: the link is free */
    uint8_t size_low;       /* the size is not aligned: two bytes by hand */
    uint8_t size_high;
    uint8_t padding[5];
    int64_t heartbeat;
    char key[KEY_SIZE];
    unsigned char data[DATA_SIZE];
    char tail[4];
};

struct block {
    int64_t slots[SLOTS];
    struct link links[LINKS];
};

struct general_record {
    uint8_t stop;
    uint8_t success;
    uint8_t padding[2];
    int32_t state;
    double progress;
};

_Static_assert(sizeof(struct link) == 4616, "a link has 4616 bytes");
_Static_assert(sizeof(struct block) == BLOCK_SIZE, "the block has 462000 bytes");
_Static_assert(sizeof(struct general_record) == 16, "the general record has 16 bytes");

static char name[300];
static sem_t *lock;
static struct block *block;
static struct link *mine;
static int file = -1;
static int slot = SLOTS;
static int64_t stamp;

static void fail(const char *what)
{
    fprintf(stderr, "%s: %s\n", what, strerror(errno));
    exit(2);
}

/* Hold it for some microseconds only: whoever dies inside blocks all others. */
static void take(void)
{
    while (sem_wait(lock) != 0)
        if (errno != EINTR)
            fail("sem_wait");
}

static void give(void) { sem_post(lock); }

/* The functions from here to leave() run under the lock. */

/* Whoever slept for more than thirty seconds was taken for dead: its link was freed, and a stranger
 * may have it by now. */
static int is_joined(void)
{
    const unsigned size = mine->size_low + 256u * mine->size_high;
    return mine->attachments != 0 && size == sizeof(struct general_record);
}

static int has_slot(void) { return slot < SLOTS && block->slots[slot] == stamp; }

/* The precise clock: time() may lag a little, and a stamp of another would lie in the future. */
static int heartbeat(void)
{
    struct timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    if (!has_slot())
        for (slot = 0; slot < SLOTS && block->slots[slot] != 0; ++slot) { }
    if (slot < SLOTS)
        block->slots[slot] = stamp = now.tv_sec;
    mine->heartbeat = now.tv_sec;
    return slot < SLOTS;
}

/* Whether the name still leads to the block that is mapped here. */
static int is_named(void)
{
    struct stat ours, named;
    const int other = shm_open(name, O_RDWR, 0);
    const int same = other >= 0 && fstat(other, &named) == 0 && fstat(file, &ours) == 0
        && named.st_dev == ours.st_dev && named.st_ino == ours.st_ino;
    if (other >= 0)
        close(other);
    return same;
}

static void join(unsigned id)
{
    const struct passwd *user = getpwuid(geteuid());
    snprintf(name, sizeof name, "/TavroLM1_%s", user != NULL ? user->pw_name : "");

    lock = sem_open(name, 0);
    if (lock == SEM_FAILED)
        fail("sem_open");
    take(); /* before the block is looked up: its last user takes the name away under the lock */
    file = shm_open(name, O_RDWR, 0);
    struct stat facts;
    if (file < 0 || fstat(file, &facts) != 0 || facts.st_size < BLOCK_SIZE
        || flock(file, LOCK_SH | LOCK_NB) != 0) { /* says that there is a user */
        give();
        fail("no block");
    }
    block = mmap(NULL, BLOCK_SIZE, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    if (block == MAP_FAILED) {
        give();
        fail("mmap");
    }
    mine = &block->links[id];
    if (!is_joined() || mine->attachments == 255) {
        give();
        errno = EINVAL;
        fail("no link for this program");
    }
    if (!heartbeat()) {
        give();
        errno = EUSERS;
        fail("no free slot");
    }
    ++mine->attachments;
    give();
}

static void leave(void)
{
    int others = 0;
    take();
    if (is_joined())
        --mine->attachments;
    for (int at = 0; at < SLOTS; ++at)
        others += block->slots[at] != 0 && !(at == slot && has_slot());
    /* The last one takes the block away; the lock stays. One that only slept for long has no slot,
     * but still the shared lock of the file. */
    if (others == 0 && is_named() && flock(file, LOCK_EX | LOCK_NB) == 0)
        shm_unlink(name);
    if (has_slot())
        block->slots[slot] = 0;
    munmap(block, BLOCK_SIZE);
    close(file);
    give();
    sem_close(lock);
}

/* Writes this side's fields and reads the other side's, under one hold of the lock; whatever the
 * other side has written stays. Whether to stop, or -1 if there is no link any more. */
static int report(double progress, int success, int state)
{
    struct general_record record;
    take();
    if (!is_joined()) {
        give();
        return -1;
    }
    memcpy(&record, mine->data, sizeof record);
    record.progress = progress;
    record.success = (uint8_t)success;
    record.state = state;
    memcpy(mine->data, &record, sizeof record);
    (void)heartbeat(); /* at least every ten seconds; after thirty, others take this one for dead */
    give();
    return record.stop != 0;
}

int main(int argc, char **argv)
{
    unsigned long id = LINKS;
    for (int at = 1; at < argc; ++at)
        if (strncmp(argv[at], "-linkid=", 8) == 0)
            id = strtoul(argv[at] + 8, NULL, 10);
    if (id >= LINKS) {
        fprintf(stderr, "usage: %s -linkid=N\n", argv[0]);
        return 2;
    }
    join((unsigned)id);
    const struct timespec work = { 0, 10 * 1000 * 1000 };
    for (int part = 0; part <= 100; ++part) {
        const int stop = report(part / 100.0, 0, 0);
        if (stop != 0) {
            leave();
            return stop < 0 ? 3 : 1;
        }
        nanosleep(&work, NULL); /* the step's real work */
    }
    const int lost = report(1.0, 1, 0) < 0;
    leave();
    return lost ? 3 : 0;
}
