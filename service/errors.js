/** A failure that the caller of the service is told about: its status, code and message are the answer. */
export class ServiceError extends Error {
  /**
   * @param {number} status
   * @param {string} code
   * @param {string} message
   */
  constructor(status, code, message) {
    super(message);
    this.status = status;
    this.code = code;
  }
}
