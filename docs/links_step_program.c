/* SPDX-License-Identifier: Apache-2.0
 *
 * A step program that joins its controller's link by the system's calls alone.
 *
 *     cc -std=c11 -o step links_step_program.c -pthread
 *     ./step -linkid=3
 *
 * It counts its progress from 0 to 1 and stops when it is asked to. It ends with 0 if it got to its
 * end, 1 if it was stopped and 2 if it could not join.
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
static int slot = -1;

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

/* Under the lock. */
static void heartbeat(void) { block->slots[slot] = mine->heartbeat = time(NULL); }

static void join(unsigned id)
{
    const struct passwd *user = getpwuid(geteuid());
    snprintf(name, sizeof name, "/TavroLM1_%s", user != NULL ? user->pw_name : "");

    lock = sem_open(name, 0);
    if (lock == SEM_FAILED)
        fail("sem_open");
    take(); /* before the block is looked up: its last user takes the name away under the lock */
    int file = shm_open(name, O_RDWR, 0);
    struct stat facts;
    if (file < 0 || fstat(file, &facts) != 0 || facts.st_size < BLOCK_SIZE) {
        give();
        fail("no block");
    }
    block = mmap(NULL, BLOCK_SIZE, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    close(file);
    if (block == MAP_FAILED) {
        give();
        fail("mmap");
    }
    mine = &block->links[id];
    const unsigned size = mine->size_low + 256u * mine->size_high;
    if (mine->attachments == 0 || mine->attachments == 255
        || size != sizeof(struct general_record)) {
        give();
        errno = EINVAL;
        fail("no link for this program");
    }
    for (slot = 0; slot < SLOTS && block->slots[slot] != 0; ++slot) { }
    if (slot == SLOTS) {
        give();
        errno = EUSERS;
        fail("no free slot");
    }
    ++mine->attachments;
    heartbeat();
    give();
}

static void leave(void)
{
    int others = 0;
    take();
    --mine->attachments;
    block->slots[slot] = 0;
    for (int at = 0; at < SLOTS; ++at)
        others += block->slots[at] != 0;
    if (others == 0)
        shm_unlink(name); /* the last one takes the block away; the lock stays */
    munmap(block, BLOCK_SIZE);
    give();
    sem_close(lock);
}

/* Writes this side's fields and reads the other side's, under one hold of the lock; whatever the
 * other side has written stays. */
static int report(double progress, int success, int state)
{
    struct general_record record;
    take();
    memcpy(&record, mine->data, sizeof record);
    record.progress = progress;
    record.success = (uint8_t)success;
    record.state = state;
    memcpy(mine->data, &record, sizeof record);
    heartbeat(); /* at least every ten seconds; after thirty, others take this program for dead */
    give();
    return record.stop;
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
        if (report(part / 100.0, 0, 0)) {
            leave();
            return 1;
        }
        nanosleep(&work, NULL); /* the step's real work */
    }
    report(1.0, 1, 0);
    leave();
    return 0;
}
