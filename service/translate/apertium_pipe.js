import { spawn } from 'node:child_process';
import { randomInt } from 'node:crypto';

const ENDED = 'the translation pipeline ended';

/** No single batch of the add-in takes a pipeline longer than a second or two. */
const EXCHANGE_LIMIT_MS = 60000;

/**
 * Runs a mode's pipeline with null flushing: a NUL after each text makes every program of the pipeline finish it and pass
 * it on, so texts cannot run into each other and the pipeline lives on. The leading `cat` gives the pipeline a real pipe
 * where Node gives a socket. "-n" is the generator's option against marks on unknown words.
 */
const SCRIPT = 'cat | bash <(apertium-wblank-mode -z "$1") -n ""';

/** Characters that the stream format gives a meaning. */
const SPECIAL = /[[\]{}^$/\\@<>]/g;

/**
 * A full stop between empty blanks ends each text: without a sentence end the analyser loses a last word that might have
 * gone on, and the post-generator a last full stop. It is taken off again.
 */
const SENTENCE_END = '[].[]';
const SENTENCE_END_BACK = /(?:\[\])?\.\[\]\s*$/;

/** One long-running translation pipeline. It starts with the first text and again after a failure. */
export class ApertiumPipe {
  #modeFile;
  #child = null;
  #turn = Promise.resolve();
  #exchange = null;
  #sentinel = `Qvz${Array.from({ length: 12 }, () => String.fromCharCode(97 + randomInt(26))).join('')}`;

  /** @param {string} modeFile path of the pair's .mode file */
  constructor(modeFile) {
    this.#modeFile = modeFile;
  }

  /**
   * Translates texts that hold no NUL; one call at a time has the pipeline, the others wait.
   * @param {string[]} texts
   * @returns {Promise<string[] | null>} null when the pipeline answered another number of texts
   */
  translate(texts) {
    // A pipeline that died between two requests is found out by the next one, which deserves a fresh pipeline.
    const result = this.#turn.then(() => this.#run(texts).catch((error) => this.#runAgain(texts, error)));
    this.#turn = result.catch(() => {});
    return result;
  }

  /** Ends the pipeline; whoever waits for it gets a failure. */
  close() {
    this.#fail(new Error('the translation pipeline was closed'));
  }

  #runAgain(texts, error) {
    if (error.message !== ENDED) throw error;
    return this.#run(texts);
  }

  #run(texts) {
    return new Promise((resolve, reject) => {
      this.#child ??= this.#start();
      const timer = setTimeout(
        () => this.#fail(new Error('the translation pipeline does not answer')),
        EXCHANGE_LIMIT_MS,
      );
      const settle = (how) => (value) => {
        clearTimeout(timer);
        this.#exchange = null;
        how(value);
      };
      this.#exchange = {
        answers: [],
        done: (answers) => settle(resolve)(answers.length === texts.length ? answers : null),
        fail: settle(reject),
      };
      // The sentinel tells a text that was lost or doubled from one that is still on its way.
      this.#child.stdin.write([...texts, this.#sentinel].map(encode).join(''));
    });
  }

  #start() {
    const child = spawn('bash', ['-c', SCRIPT, 'apertium', this.#modeFile], {
      stdio: ['pipe', 'pipe', 'ignore'],
      detached: true, // a process group of its own, so that the whole pipeline can be ended
    });
    let rest = '';
    child.stdout.setEncoding('utf8');
    child.stdout.on('data', (chunk) => {
      const answers = (rest + chunk).split('\0');
      rest = answers.pop();
      if (child === this.#child) answers.forEach((answer) => this.#take(decode(answer)));
    });
    child.stdin.on('error', () => {}); // its end is seen below
    const ended = () => {
      if (child === this.#child) this.#fail(new Error(ENDED));
    };
    child.on('error', ended);
    child.on('close', ended);
    return child;
  }

  #take(answer) {
    if (!this.#exchange) return;
    if (answer === this.#sentinel) this.#exchange.done(this.#exchange.answers);
    else this.#exchange.answers.push(answer);
  }

  #fail(error) {
    const child = this.#child;
    this.#child = null;
    if (child?.pid && child.exitCode === null && child.signalCode === null) {
      try {
        process.kill(-child.pid, 'SIGKILL');
      } catch {
        // It ended in this very moment.
      }
    }
    this.#exchange?.fail(error);
  }
}

function encode(text) {
  return `${text.replace(SPECIAL, '\\$&')}${SENTENCE_END}\0`;
}

function decode(answer) {
  return answer.replace(SENTENCE_END_BACK, '').replaceAll('[]', '').replace(/\\(.)/gsu, '$1');
}
