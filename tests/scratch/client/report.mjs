// Collects what was checked, one line each.

export class Report {
    #lines = [];

    /** Notes a check. `reason` says what is wrong and is shown only when `passed` is false. */
    check(name, passed, reason = '') {
        this.#lines.push({ name, passed: Boolean(passed), reason });
        return Boolean(passed);
    }

    /** Notes that `actual` should be `expected`; both are shown as JSON when they differ. */
    compare(name, actual, expected) {
        const [is, shouldBe] = [actual, expected].map(value => JSON.stringify(value));
        return this.check(name, is === shouldBe, `is ${is}, should be ${shouldBe}`);
    }

    /** Runs `step`; what it throws fails the check called `name`. Gives its result. */
    async attempt(name, step) {
        try {
            const result = await step();
            this.check(name, true);
            return result;
        } catch (error) {
            this.check(name, false, error?.message ?? String(error));
            return undefined;
        }
    }

    /** Whether everything passed; a report without checks did not. */
    get passed() {
        return this.#lines.length > 0 && this.#lines.every(line => line.passed);
    }

    /** How many checks were made. */
    get checks() {
        return this.#lines.length;
    }

    get failures() {
        return this.#lines.filter(line => !line.passed);
    }

    print(heading) {
        console.log(`== ${heading} ==`);
        for (const { name, passed, reason } of this.#lines) {
            console.log(passed ? `ok    ${name}` : `FAIL  ${name}: ${reason}`);
        }
    }
}
